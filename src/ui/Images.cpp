#include "ui/Images.h"

#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

namespace vantor {

QPixmap image(const QString& name, QSize size, double devicePixelRatio) {
    QPixmap picture(size * devicePixelRatio);
    picture.fill(Qt::transparent);
    QSvgRenderer renderer(QStringLiteral(":/images/") + name + QStringLiteral(".svg"));
    if (renderer.isValid()) {
        QPainter painter(&picture);
        renderer.render(&painter);
    }
    picture.setDevicePixelRatio(devicePixelRatio);
    return picture;
}

}  // namespace vantor
