// Control, command and tool bar ids of the main dialog, and the numbers of its layout.
#pragma once

namespace mainids {

inline constexpr int kTemplate = 1000;
inline constexpr int kMenu = 1026;

// Controls.
inline constexpr int kList = 9002;
inline constexpr int kDescription = 9003;
inline constexpr int kValue = 9004;
inline constexpr int kToolBar = 59392;
inline constexpr int kStatusBar = 59393;

// Menu commands.
inline constexpr int kNew = 8027;
inline constexpr int kOpen = 8028;
inline constexpr int kSave = 8029;
inline constexpr int kSaveAs = 8030;
inline constexpr int kEnd = 8031;
inline constexpr int kSelectAll = 8032;
inline constexpr int kInverse = 8033;
inline constexpr int kSelectList = 8034;
inline constexpr int kFind = 8035;
inline constexpr int kShowAll = 8036;
inline constexpr int kShowList = 8037;
// 8038 to 8041, the orders' commands, stand in the order table (dialogs/ListOrderTable.h).
inline constexpr int kAdd = 8042;
inline constexpr int kDelete = 8043;
inline constexpr int kSetSelection = 8044;
inline constexpr int kSetAll = 8045;
inline constexpr int kCompare = 8046;
inline constexpr int kHelp = 8047;
inline constexpr int kInfo = 8048;
inline constexpr int kShowErrorLog = 1116;
inline constexpr int kConfig = 1117;

// Tool bar buttons; 7010 to 7013, the orders' buttons, stand in the order table.
inline constexpr int kButtonNew = 7000;
inline constexpr int kButtonOpen = 7001;
inline constexpr int kButtonSave = 7002;
inline constexpr int kButtonSaveAs = 7003;
inline constexpr int kButtonSelectAll = 7004;
inline constexpr int kButtonInverse = 7005;
inline constexpr int kButtonSelectList = 7006;
inline constexpr int kButtonFind = 7007;
inline constexpr int kButtonShowAll = 7008;
inline constexpr int kButtonShowList = 7009;
inline constexpr int kButtonAdd = 7014;
inline constexpr int kButtonDelete = 7015;
inline constexpr int kButtonSetAll = 7016;
inline constexpr int kButtonSetSelection = 7017;
inline constexpr int kButtonCompare = 7018;
inline constexpr int kButtonHelp = 7019;
inline constexpr int kIconCompareOff = 1075;
inline constexpr int kIconCompareOn = 1109;

// Layout, in pixels; the margin is kMargin of DialogBuild.h.
inline constexpr int kToolBarHeight = 16;
inline constexpr int kToolBarIndent = 3;
// The description shows 1 to 3 value-field heights; the list keeps at least 6 of them before
// the description gives up a line, and below 2 nothing moves any more.
inline constexpr int kMaxVisibleLines = 3;
inline constexpr int kListLinesWanted = 6;
inline constexpr int kListLinesLeast = 2;

} // namespace mainids
