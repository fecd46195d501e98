// icon-renderer SVG SIZE PNG: draws the application's icon as a square of SIZE pixels. Used by the build alone.

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>
#include <cstdio>

int main(int count, char** arguments) {
    const int size = count == 4 ? QByteArray(arguments[2]).toInt() : 0;
    QSvgRenderer drawing;
    if (size <= 0 || !drawing.load(QString::fromLocal8Bit(arguments[1]))) {
        std::fprintf(stderr, "usage: icon-renderer SVG SIZE PNG\n");
        return 2;
    }
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter);
    painter.end();
    return image.save(QString::fromLocal8Bit(arguments[3]), "PNG") ? 0 : 1;
}
