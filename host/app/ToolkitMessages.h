// Keeps the toolkit's own debug and warning chatter off the user's output.
#pragma once

namespace cadhost {

// Qt's debug, info and warning messages (about XDG_RUNTIME_DIR, window size hints and the like)
// are notes for Qt's developers, not for a person at cadhost's command line: they are dropped,
// unless the environment variable CADHOST_QT_MESSAGES is set to a non-empty value. Critical and
// fatal messages still reach stderr. Call before the QApplication is made.
void quietToolkitMessages();

} // namespace cadhost
