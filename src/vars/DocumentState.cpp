// DocumentState: the question about a path that the drawing brought.
#include "DocumentState.h"

#include "settings/cMsgCatalog.h"
#include "TextHelpers.h"

#include "hostui.h"
#include "UiServices.h"

void DocumentState::AskForDrawingPath(DrawingPath which) {
    const bool editor = which == DrawingPath::Editor;
    std::string& offered = editor ? drawingEditorPath : drawingAvlFilePath;
    if (offered.empty())
        return;
    std::string& own = editor ? editorPath : avlFilePath;
    const std::string& text = editor ? gMsg.TxDrawingEditor : gMsg.TxDrawingAvlFile;
    const std::string question =
        formatText("%s\n%s\n%s %s", text.c_str(), offered.c_str(), gMsg.TxKeepOwnPath.c_str(), own.c_str());
    kova::UiServices* ui = acHostUiServices();
    if (ui && ui->messageBox(kova::BoxKind::Question, gMsg.TiMsgBoxQuestion, question,
                             kova::BoxButtons::YesNo) == kova::BoxAnswer::Yes)
        own = offered;
    offered.clear();
}
