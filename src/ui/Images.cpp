#include "ui/Images.h"

#include <QtGui/QPainter>
#include <QtGui/QPixmapCache>
#include <QtSvg/QSvgRenderer>

namespace vantor {

QPixmap image(const QString& name, QSize size, double devicePixelRatio) {
    const QString key =
        QStringLiteral("%1 %2x%3@%4").arg(name).arg(size.width()).arg(size.height()).arg(devicePixelRatio);
    QPixmap picture;
    if (QPixmapCache::find(key, &picture)) return picture;
    picture = QPixmap(size * devicePixelRatio);
    picture.fill(Qt::transparent);
    QSvgRenderer renderer(QStringLiteral(":/images/") + name + QStringLiteral(".svg"));
    if (renderer.isValid()) {
        QPainter painter(&picture);
        renderer.render(&painter);
    }
    picture.setDevicePixelRatio(devicePixelRatio);
    QPixmapCache::insert(key, picture);
    return picture;
}

}  // namespace vantor
