// cDlgInfo: the info dialog with the program's title, version, command and copyright lines.
#include "cDlgInfo.h"

#include "DialogBuild.h"
#include "DialogRoutines.h"
#include "ModuleResources.h"
#include "settings/cMsgCatalog.h"

#include <QFontMetrics>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

namespace {

QLabel* makeStatic(QWidget* parent, const DialogTemplate& t, int id, const DialogBaseUnits& base) {
    auto* label = new QLabel(parent);
    label->setObjectName(QString::number(id));
    label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    if (const DialogControl* c = t.control(id))
        label->setGeometry(dialogUnitsToPixels(c->rect, base));
    return label;
}

} // namespace

cDlgInfo::cDlgInfo(std::string titleLine, std::string versionLine, std::string commandLine,
                   std::string copyrightLine, QWidget* parent)
    : TemplateDialog(parent), m_titleLine(std::move(titleLine)), m_versionLine(std::move(versionLine)),
      m_commandLine(std::move(commandLine)), m_copyrightLine(std::move(copyrightLine)) {
    DialogTemplate t;
    const DialogBaseUnits base = startFromTemplate(kTemplateId, t, Sizing::Fixed);

    m_ok = makeControl<QPushButton>(this, t, kIdOk, base);
    m_ok->setDefault(true);
    connect(m_ok, &QPushButton::clicked, this, &cDlgInfo::accept);
    m_title = makeStatic(this, t, kIdTitle, base);
    m_version = makeStatic(this, t, kIdVersion, base);
    m_command = makeStatic(this, t, kIdCommand, base);
    m_copyright = makeStatic(this, t, kIdCopyright, base);

    auto* picture = new QLabel(this);
    picture->setObjectName(QString::number(kIdPicture));
    if (const DialogControl* c = t.control(kIdPicture)) {
        const QRect rect = dialogUnitsToPixels(c->rect, base);
        picture->setGeometry(rect);
        picture->setPixmap(moduleBitmap(c->text.toInt(), rect.size()));
    }
}

std::string cDlgInfo::versionLineText() {
    return "Version: 1.1";
}

std::string cDlgInfo::commandLineText() {
    return "KOVA_VARDESK";
}

std::string cDlgInfo::copyrightLineText() {
    return "Copyright (C) 2024 KOVA";
}

void cDlgInfo::OnInitDialog() {
    centreOnScreen(); // as the template asks

    // Measured with the font the label will paint with, which is only settled once it is polished.
    m_title->ensurePolished();
    const QFontMetrics metrics = m_title->fontMetrics();
    int widest = 0;
    for (const std::string* line : {&m_titleLine, &m_versionLine, &m_commandLine, &m_copyrightLine})
        widest = std::max(widest, metrics.horizontalAdvance(qs(*line)));
    if (widest > kNarrowTextWidth) {
        const QSize frameExtra = windowFrameExtra(*this);
        setFixedSize(widest + 88 - frameExtra.width(), height());
        const QRect ok = m_ok->geometry();
        m_ok->move((widest - ok.width() + 88) / 2, ok.y());
        for (QLabel* label : {m_title, m_version, m_command, m_copyright})
            label->setGeometry(78, label->y(), widest, label->height());
        // The texts now start at a fixed pixel column, while the picture was laid out in dialog
        // units: with a font wider than the template's, it would reach under the texts.
        if (auto* picture = findChild<QLabel*>(QString::number(kIdPicture))) {
            QRect rect = picture->geometry();
            if (rect.right() >= 78 - kPictureGap) {
                rect.setRight(78 - kPictureGap - 1);
                picture->setGeometry(rect);
                picture->setPixmap(moduleBitmap(kBitmapId, rect.size()));
            }
        }
    }

    setWindowTitle(qs(gMsg.TiDlgInfo));
    m_title->setText(qs(m_titleLine));
    m_version->setText(qs(m_versionLine));
    m_command->setText(qs(m_commandLine));
    m_copyright->setText(qs(m_copyrightLine));
}
