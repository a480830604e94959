// The help service: help file lookup, topic file, and the late-loaded help engine.
#include "HelpService.h"

#include "cLispBridge.h"
#include "cMsgCatalog.h"

#include "ProfileFile.h"
#include "UiServices.h"

#include <hostui.h>

namespace {

// A topic value is at most 510 bytes, read through a buffer of 511.
constexpr std::size_t kTopicBufferSize = 511;

// The help engine of this process: loaded at first use, and a failed load is final.
struct HelpEngine {
    bool loaded = false;
    bool loadingFailed = false;
};
HelpEngine gEngine;

std::string directoryOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

} // namespace

std::string gHelpBase;

bool HtmlHelpLoader(const std::string& fileAndTopic) {
    kova::UiServices* ui = acHostUiServices();
    if (!gEngine.loaded && !gEngine.loadingFailed) {
        if (ui != nullptr && ui->loadHelpEngine())
            gEngine.loaded = true;
        else
            gEngine.loadingFailed = true;
    }
    if (!gEngine.loaded || ui == nullptr)
        return false;
    // The topic is what follows "#" in the file name part of the text.
    const std::size_t slash = fileAndTopic.find_last_of('/');
    const std::size_t hash = fileAndTopic.find('#', slash == std::string::npos ? 0 : slash);
    if (hash == std::string::npos)
        return ui->showHelp(fileAndTopic, {}) != 0;
    return ui->showHelp(fileAndTopic.substr(0, hash), fileAndTopic.substr(hash + 1)) != 0;
}

void ResetHtmlHelpLoader() {
    gEngine = HelpEngine{};
}

void ShowHelp(const std::string& section, const std::string& key) {
    const std::string fileName = gHelpBase + ".html";
    std::string helpPath;
    if (gLispBridge.PathInfo(fileName, helpPath) != LispResult::Normal) {
        gMsg.ShowErrorBox(gMsg.TxPathNotFound1 + " '" + fileName + "' " + gMsg.TxPathNotFound2);
        return;
    }
    const std::string topicFile = directoryOf(helpPath) + gHelpBase + ".top";
    std::string topic;
    kova::profile::getString(topicFile, section, key, "", topic, kTopicBufferSize);
    if (topic.empty()) {
        gMsg.ShowErrorBox(gMsg.TxHelpKeyNotFound1 + " '" + key + "' " + gMsg.TxHelpKeyNotFound2);
        return;
    }
    if (!HtmlHelpLoader(helpPath + topic))
        gMsg.ShowErrorBox(gMsg.TxHelpFileNotFound1 + "\n    " + helpPath + "\n" + gMsg.TxHelpFileNotFound2);
}
