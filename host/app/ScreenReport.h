// A test hook of the window mode: writes where every visible window and control stands.
#pragma once
#include <QObject>
#include <QString>
#include <QTimer>

namespace cadhost {

// While cadhost runs with the environment variable CADHOST_SCREEN_REPORT naming a file, that file
// is rewritten a few times a second as JSON: each visible top-level window with its title, X
// window id, screen geometry, owner and device pixel ratio, and its visible controls with their
// geometry inside the window, texts and what the texts need. Real-screen tests read it to know
// where to look in their screenshots; what they check is the pixels.
class ScreenReport : public QObject {
    Q_OBJECT
public:
    // Starts the reports when the environment asks for them; null otherwise.
    static ScreenReport* startIfAsked(QObject* parent);

    explicit ScreenReport(const QString& path, QObject* parent = nullptr);
    void writeNow();

private:
    QString m_path;
    QTimer m_timer;
};

} // namespace cadhost
