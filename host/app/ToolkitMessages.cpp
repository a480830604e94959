// Keeps the toolkit's own debug and warning chatter off the user's output.
#include "ToolkitMessages.h"

#include <QString>
#include <QtGlobal>

#include <cstdio>
#include <cstdlib>

namespace cadhost {
namespace {

void keepOnlySerious(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type != QtCriticalMsg && type != QtFatalMsg)
        return;
    std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
    std::fflush(stderr);
}

} // namespace

void quietToolkitMessages() {
    const char* wanted = std::getenv("CADHOST_QT_MESSAGES");
    if (wanted && *wanted)
        return;
    qInstallMessageHandler(keepOnlySerious);
}

} // namespace cadhost
