// The help service: a dialog's help key shown as a page of the help file.
#pragma once
#include <string>

// Shows the page for key: the help file gHelpBase + ".html" is found through kova_pathInfo, the
// topic file gHelpBase + ".top" beside it maps key (in section) to the text appended to the help
// file's path ("#anchor"), and the help engine shows the result. Every failure ends in an error
// box with the catalog's words: help file not found, key not found (or no topic file), or the
// engine missing or refusing the page. Nothing else changes.
void ShowHelp(const std::string& section, const std::string& key);

// Shows fileAndTopic ("/path/VarDesk.html#anchor") with the host's help engine. The engine is
// asked for once; when it is missing it is not asked again in this process. False when the
// engine is missing or could not show the page.
bool HtmlHelpLoader(const std::string& fileAndTopic);

// Forgets the engine's state, as a new process would start. For tests only.
void ResetHtmlHelpLoader();

// The base name of the help and topic files; the frame gives the module's base name at start.
extern std::string gHelpBase;
