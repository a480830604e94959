#include "DialogBuild.h"

#include <QDialog>

DialogBaseUnits startFromTemplate(QDialog& dialog, int templateId, DialogTemplate& t) {
    dialog.setProperty("templateId", templateId);
    dialog.setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                          Qt::WindowCloseButtonHint);
    dialog.setSizeGripEnabled(false);
    loadDialogTemplate(templateId, t);
    const QFont font = dialogFontOf(t);
    dialog.setFont(font);
    const DialogBaseUnits base = baseUnitsOf(font);
    dialog.resize(dialogUnitsToPixels(t.size, base));
    dialog.setWindowTitle(t.title);
    return base;
}
