// Icons and bitmaps of the module by resource number, drawn from the SVG pictures in its resources.
#pragma once
#include <QIcon>
#include <QPixmap>
#include <QSize>

// True when the module has a picture for icon id.
bool hasModuleIcon(int id);
// Icon id of the module; a null icon when it has none.
QIcon moduleIcon(int id);
// Icon id drawn at size x size pixels with a transparent background (the mask); a null pixmap
// when the module has no such icon.
QPixmap moduleIconPixmap(int id, int size = 16);
// Bitmap id drawn into size pixels; a null pixmap when the module has no such bitmap.
QPixmap moduleBitmap(int id, const QSize& size);
