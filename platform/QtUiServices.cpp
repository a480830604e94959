// Qt implementation of the UI services: what a person at the screen sees.
#include "QtUiServices.h"

#include "ProgramStart.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QTextBrowser>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

namespace kova {
namespace {

// Catalog texts carry line breaks as line feed and carriage return; Qt wants line feeds only.
QString boxText(const std::string& text) {
    QString result = QString::fromStdString(text);
    result.remove(QLatin1Char('\r'));
    return result;
}

QMessageBox::Icon iconOf(BoxKind kind) {
    switch (kind) {
    case BoxKind::Info:
        return QMessageBox::Information;
    case BoxKind::Warning:
        return QMessageBox::Warning;
    case BoxKind::Error:
        return QMessageBox::Critical;
    case BoxKind::Question:
        return QMessageBox::Question;
    case BoxKind::Plain:
        return QMessageBox::NoIcon;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons buttonsOf(BoxButtons buttons) {
    switch (buttons) {
    case BoxButtons::Ok:
        return QMessageBox::Ok;
    case BoxButtons::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case BoxButtons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case BoxButtons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    }
    return QMessageBox::Ok;
}

// The answer of a box closed without a button (Escape, close box): the box's way out.
BoxAnswer escapeAnswer(BoxButtons buttons) {
    switch (buttons) {
    case BoxButtons::Ok:
        return BoxAnswer::Ok;
    case BoxButtons::YesNo:
        return BoxAnswer::No;
    case BoxButtons::OkCancel:
    case BoxButtons::YesNoCancel:
        return BoxAnswer::Cancel;
    }
    return BoxAnswer::Cancel;
}

// Centres box on the window it belongs to once it has its final size: Qt places a box for the
// size it has before it is laid out, which leaves it too high.
void centreWhenShown(QMessageBox& box) {
    QTimer::singleShot(0, &box, [&box] {
        const QWidget* owner = box.parentWidget() ? box.parentWidget()->window() : nullptr;
        if (!owner)
            return;
        const QRect frame = box.frameGeometry();
        box.move(owner->frameGeometry().center() - QPoint(frame.width() / 2, frame.height() / 2) +
                 (box.pos() - frame.topLeft()));
    });
}

QString qtPatterns(const std::string& patterns) {
    QStringList list;
    for (const QString& part : QString::fromStdString(patterns).split(QLatin1Char(';'))) {
        const QString pattern = part.trimmed();
        if (pattern.isEmpty())
            continue;
        list << (pattern == QLatin1String("*.*") ? QStringLiteral("*") : pattern);
    }
    return list.join(QLatin1Char(' '));
}

} // namespace

QString qtNameFilters(const std::string& filter) {
    // Split into fields at "|"; fields come in pairs of description and patterns. An empty
    // field ends the filter, as the closing "||" does.
    std::vector<std::string> fields;
    std::size_t start = 0;
    while (start < filter.size()) {
        std::size_t end = filter.find('|', start);
        if (end == std::string::npos)
            end = filter.size();
        if (end == start)
            break;
        fields.push_back(filter.substr(start, end - start));
        start = end + 1;
    }
    QStringList entries;
    for (std::size_t i = 0; i + 1 < fields.size(); i += 2) {
        QString description = QString::fromStdString(fields[i]).trimmed();
        const QString patterns = qtPatterns(fields[i + 1]);
        if (patterns.isEmpty())
            continue;
        if (description.endsWith(QLatin1Char(')'))) {
            const qsizetype open = description.lastIndexOf(QLatin1Char('('));
            if (open >= 0)
                description = description.left(open).trimmed();
        }
        entries << (description.isEmpty() ? QString() : description + QLatin1Char(' ')) + QLatin1Char('(') +
                       patterns + QLatin1Char(')');
    }
    return entries.join(QStringLiteral(";;"));
}

QtUiServices::QtUiServices(QWidget* parent) : m_parent(parent) {}

QWidget* QtUiServices::owner() const {
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    return m_parent;
}

BoxAnswer QtUiServices::messageBox(BoxKind kind, const std::string& title, const std::string& text,
                                   BoxButtons buttons) {
    QMessageBox box(iconOf(kind), QString::fromStdString(title), boxText(text), buttonsOf(buttons), owner());
    box.setWindowModality(Qt::ApplicationModal);
    centreWhenShown(box);
    switch (box.exec()) {
    case QMessageBox::Ok:
        return BoxAnswer::Ok;
    case QMessageBox::Cancel:
        return BoxAnswer::Cancel;
    case QMessageBox::Yes:
        return BoxAnswer::Yes;
    case QMessageBox::No:
        return BoxAnswer::No;
    default:
        return escapeAnswer(buttons);
    }
}

void QtUiServices::alert(const std::string& text) {
    QMessageBox box(QMessageBox::Warning, QString::fromLatin1(kHostTitle), boxText(text), QMessageBox::Ok,
                    owner());
    box.setWindowModality(Qt::ApplicationModal);
    centreWhenShown(box);
    box.exec();
}

std::optional<std::string> QtUiServices::fileDialog(FileDialogKind kind, const std::string& filter,
                                                    const std::string& initialFile,
                                                    const std::string& defaultExtension) {
    QFileDialog dialog(owner());
    dialog.setNameFilter(qtNameFilters(filter));
    // A name typed without an extension gets the default one, when opening too.
    QString suffix = QString::fromStdString(defaultExtension);
    while (suffix.startsWith(QLatin1Char('.')))
        suffix.remove(0, 1);
    dialog.setDefaultSuffix(suffix);
    if (kind == FileDialogKind::Save) {
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setFileMode(QFileDialog::AnyFile);
        // The module asks its own questions before it replaces a file.
        dialog.setOption(QFileDialog::DontConfirmOverwrite);
    } else {
        dialog.setAcceptMode(QFileDialog::AcceptOpen);
        dialog.setFileMode(QFileDialog::ExistingFile);
    }
    const QString initial = QString::fromStdString(initialFile);
    const QFileInfo info(initial);
    if (!initial.isEmpty()) {
        if (info.isDir()) {
            dialog.setDirectory(initial);
        } else {
            if (!info.path().isEmpty() && QFileInfo(info.path()).isDir())
                dialog.setDirectory(info.path());
            dialog.selectFile(info.fileName());
        }
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return dialog.selectedFiles().constFirst().toStdString();
}

int QtUiServices::startProgram(const std::string& commandLine) {
    return startProgramDetached(commandLine);
}

bool QtUiServices::loadHelpEngine() {
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
}

int QtUiServices::showHelp(const std::string& file, const std::string& topic) {
    const QString path = QString::fromStdString(file);
    if (path.isEmpty() || !QFileInfo(path).isFile() || !loadHelpEngine())
        return 0;
    QUrl url = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
    if (!topic.empty())
        url.setFragment(QString::fromStdString(topic));
    if (QDesktopServices::openUrl(url))
        return 1;
    return showInViewer(path, QString::fromStdString(topic));
}

int QtUiServices::showInViewer(const QString& file, const QString& topic) {
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr)
        return 0;
    // The viewer is application modal so that it takes input while the asking dialog's modal
    // loop runs; closing it returns to that dialog.
    QDialog* viewer = new QDialog(owner());
    viewer->setAttribute(Qt::WA_DeleteOnClose);
    viewer->setWindowModality(Qt::ApplicationModal);
    viewer->setWindowTitle(QFileInfo(file).fileName());
    auto* layout = new QVBoxLayout(viewer);
    auto* browser = new QTextBrowser(viewer);
    browser->setOpenExternalLinks(true);
    layout->addWidget(browser);
    QUrl url = QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath());
    browser->setSource(url);
    if (!topic.isEmpty())
        browser->scrollToAnchor(topic);
    viewer->resize(700, 550);
    viewer->show();
    return 1;
}

int QtUiServices::runModal(QDialog& dialog) {
    return dialog.exec();
}

} // namespace kova
