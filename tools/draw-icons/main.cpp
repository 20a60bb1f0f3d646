// Paints the launcher's icons and the default project thumbnail and writes them as PNG files,
// each icon also as "name@2x.png" at twice the size for screens scaled to 200 %: the same drawing
// on a finer grid, not an enlarged copy, so that it is sharp there. Qt picks the @2x file
// beside the plain one by itself. The output is committed under resources/;
// tools/draw-icons/regenerate rewrites it.
//
// Usage: draw-icons FOLDER    (writes FOLDER/icons/*.png with their @2x twins, and FOLDER/thumbnails/default.png)
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QTextStream>
#include <QtMath>

#include <initializer_list>

namespace {

// Light ink that reads on the dark panel rgb(71, 71, 71) of the menu strip.
constexpr QRgb lightInk = 0xffe5e5e5;
constexpr QRgb noBadge = 0;
constexpr QRgb yellowBadge = 0xfff2c12e;
constexpr QRgb redBadge = 0xffe5484d;
constexpr QRgb updateGreen = 0xff3fae4a;

// The menu glyphs are drawn on a 36 by 36 grid.
const QPointF middle(18, 18);

using Glyph = void (*)(QPainter &, const QColor &ink);

enum class Tone { Plain, Dimmed };

struct Icon
{
    const char *path; // below the output folder
    int size;
    Glyph glyph;
    Tone tone;
    QRgb badge;
};

// The "_off" icons: the same glyph, greyed and darker, badge included.
QColor dimmed(const QColor &colour)
{
    return QColor::fromHsvF(colour.hsvHueF(), colour.hsvSaturationF() * 0.45, colour.valueF() * 0.62);
}

QPolygonF polygon(std::initializer_list<QPointF> points)
{
    return QPolygonF(QVector<QPointF>(points));
}

void useStroke(QPainter &p, const QColor &ink, qreal width = 2.4)
{
    QPen pen(ink, width);
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    p.setPen(pen);
    p.setBrush(Qt::NoBrush);
}

void useFill(QPainter &p, const QColor &ink)
{
    p.setPen(Qt::NoPen);
    p.setBrush(ink);
}

void drawDot(QPainter &p, const QColor &ink, const QPointF &at, qreal radius)
{
    useFill(p, ink);
    p.drawEllipse(at, radius, radius);
}

// A filled triangle whose base is centred on `at` and whose tip lies `size` further along `direction`.
void drawArrowHead(QPainter &p, const QColor &ink, const QPointF &at, const QPointF &direction, qreal size)
{
    const QPointF along = direction * size;
    const QPointF across(-along.y(), along.x());
    useFill(p, ink);
    p.drawPolygon(polygon({ at + along, at + across, at - across }));
}

// Badge dot at the top right; a ring around it is cleared so that it stands off the glyph.
void drawBadge(QPainter &p, int size, const QColor &colour)
{
    const qreal radius = size * 0.15;
    const QPointF at(size - radius - 1, radius + 1);
    p.save();
    p.setCompositionMode(QPainter::CompositionMode_Clear);
    drawDot(p, Qt::black, at, radius + 1.6);
    p.restore();
    drawDot(p, colour, at, radius);
}

// Angles in degrees, clockwise from three o'clock as on the screen.
QPointF onCircle(const QPointF &centre, qreal radius, qreal degrees)
{
    const qreal radians = qDegreesToRadians(degrees);
    return centre + QPointF(radius * qCos(radians), radius * qSin(radians));
}

QPolygonF star(const QPointF &centre, qreal outer, qreal inner)
{
    QPolygonF points;
    for (int i = 0; i < 10; ++i)
        points << onCircle(centre, i % 2 ? inner : outer, -90.0 + i * 36.0);
    return points;
}

void drawHome(QPainter &p, const QColor &ink)
{
    useStroke(p, ink);
    p.drawPolyline(polygon({ { 5, 18 }, { 18, 6.5 }, { 31, 18 } }));
    p.drawPolyline(polygon({ { 9.5, 15 }, { 9.5, 29.5 }, { 26.5, 29.5 }, { 26.5, 15 } }));
    p.drawPolyline(polygon({ { 15.5, 29.5 }, { 15.5, 22 }, { 20.5, 22 }, { 20.5, 29.5 } }));
}

void drawRing(QPainter &p, const QColor &ink)
{
    useStroke(p, ink);
    p.drawEllipse(middle, 13, 13);
}

void drawInfo(QPainter &p, const QColor &ink)
{
    drawRing(p, ink);
    useStroke(p, ink, 3);
    p.drawLine(QPointF(18, 16.5), QPointF(18, 25));
    drawDot(p, ink, QPointF(18, 11.5), 2);
}

void drawHelp(QPainter &p, const QColor &ink)
{
    drawRing(p, ink);
    QPainterPath hook;
    hook.moveTo(13.5, 14.5);
    hook.cubicTo(13.5, 8.5, 22.5, 8.5, 22.5, 14);
    hook.cubicTo(22.5, 17.5, 18, 17.5, 18, 21);
    useStroke(p, ink, 2.8);
    p.drawPath(hook);
    drawDot(p, ink, QPointF(18, 25.5), 1.9);
}

void drawAppl(QPainter &p, const QColor &ink)
{
    useStroke(p, ink, 2.2);
    for (const QPointF &corner : { QPointF(7, 7), QPointF(20, 7), QPointF(7, 20), QPointF(20, 20) })
        p.drawRoundedRect(QRectF(corner, QSizeF(9, 9)), 2, 2);
}

void drawLicense(QPainter &p, const QColor &ink)
{
    useStroke(p, ink, 2.6);
    p.drawEllipse(QPointF(11, 18), 6, 6);
    p.drawPolyline(polygon({ { 17, 18 }, { 31, 18 }, { 31, 24 } }));
    p.drawLine(QPointF(26, 18), QPointF(26, 22.5));
    drawDot(p, ink, QPointF(11, 18), 1.6);
}

void drawPref(QPainter &p, const QColor &ink)
{
    struct Corner
    {
        qreal radius;
        qreal degrees;
    };
    const Corner tooth[] = { { 10.5, -15 }, { 14, -9 }, { 14, 9 }, { 10.5, 15 } };
    const int teeth = 8;
    QPolygonF outline;
    for (int i = 0; i < teeth; ++i) {
        for (const Corner &corner : tooth)
            outline << onCircle(middle, corner.radius, i * 360.0 / teeth + corner.degrees);
    }
    QPainterPath gear; // odd-even fill leaves the hub open
    gear.addPolygon(outline);
    gear.closeSubpath();
    gear.addEllipse(middle, 4.5, 4.5);
    useFill(p, ink);
    p.drawPath(gear);
}

void drawRefresh(QPainter &p, const QColor &ink)
{
    const qreal radius = 11;
    const QRectF circle(middle.x() - radius, middle.y() - radius, 2 * radius, 2 * radius);
    // Two arcs turning anticlockwise, each ending in an arrow head. drawArc counts its angles
    // anticlockwise in 1/16 degree, onCircle clockwise.
    const qreal sweep = 130;
    for (const qreal start : { 20.0, 200.0 }) {
        useStroke(p, ink);
        p.drawArc(circle, qRound(start * 16), qRound(sweep * 16));
        const qreal end = -(start + sweep);
        drawArrowHead(p, ink, onCircle(middle, radius, end), onCircle(QPointF(), 1, end - 90), 4.5);
    }
}

void drawPin(QPainter &p, const QColor &)
{
    p.setPen(QPen(QColor(0xc9, 0x9a, 0x00), 1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(QColor(0xf5, 0xc4, 0x00));
    p.drawPolygon(star(QPointF(12.5, 13.2), 11.2, 4.6));
}

void drawNoPin(QPainter &p, const QColor &)
{
    useStroke(p, QColor(0x9a, 0x9a, 0x9a), 1.5);
    p.drawPolygon(star(QPointF(12.5, 13.2), 10.8, 4.4));
}

void drawUpdateMark(QPainter &p, const QColor &)
{
    const QColor white(Qt::white);
    drawDot(p, QColor::fromRgb(updateGreen), QPointF(12.5, 12.5), 11.5);
    useStroke(p, white, 2.6);
    p.drawLine(QPointF(12.5, 19), QPointF(12.5, 11));
    drawArrowHead(p, white, QPointF(12.5, 11), QPointF(0, -1), 5.5);
}

void drawNothing(QPainter &, const QColor &) { }

void drawComboArrow(QPainter &p, const QColor &ink)
{
    drawArrowHead(p, ink, QPointF(4, 2), QPointF(0, 1), 3.3);
}

void drawComboArrowGrey(QPainter &p, const QColor &)
{
    drawComboArrow(p, QColor(0xa8, 0xa8, 0xa8));
}

void drawComboArrowLight(QPainter &p, const QColor &)
{
    drawComboArrow(p, QColor(0xf2, 0xf2, 0xf2));
}

void drawCheck(QPainter &p, const QColor &)
{
    useStroke(p, QColor::fromRgb(updateGreen), 3.6);
    p.drawPolyline(polygon({ { 6.5, 17 }, { 13, 23.5 }, { 25.5, 9 } }));
}

void drawDownload(QPainter &p, const QColor &ink)
{
    useStroke(p, ink, 2.8);
    p.drawLine(QPointF(20, 5.5), QPointF(20, 17));
    p.drawPolyline(polygon({ { 7, 24 }, { 7, 33 }, { 33, 33 }, { 33, 24 } }));
    drawArrowHead(p, ink, QPointF(20, 16), QPointF(0, 1), 7.5);
}

void drawBrand(QPainter &p, const QColor &)
{
    QLinearGradient blue(0, 16, 0, 240);
    blue.setColorAt(0, QColor(0x6a, 0x9d, 0xce));
    blue.setColorAt(1, QColor(0x48, 0x7b, 0xae));
    p.setPen(Qt::NoPen);
    p.setBrush(blue);
    p.drawRoundedRect(QRectF(16, 16, 224, 224), 44, 44);
    useFill(p, QColor(0xf4, 0xf7, 0xfb));
    p.drawPolygon(polygon({ { 72, 64 }, { 184, 64 }, { 184, 92 }, { 112, 164 }, { 184, 164 }, { 184, 192 }, { 72, 192 },
        { 72, 164 }, { 144, 92 }, { 72, 92 } }));
}

// A sheet with a folded corner holding a small landscape: "this project has no picture".
void drawThumbnail(QPainter &p, const QColor &)
{
    p.fillRect(QRectF(0, 0, 256, 256), QColor(0x8c, 0x8c, 0x8c));
    const qreal fold = 36;
    useFill(p, QColor(0xe4, 0xe4, 0xe4));
    p.drawPolygon(polygon({ { 60, 36 }, { 196 - fold, 36 }, { 196, 36 + fold }, { 196, 220 }, { 60, 220 } }));
    useFill(p, QColor(0xb8, 0xb8, 0xb8));
    p.drawPolygon(polygon({ { 196 - fold, 36 }, { 196 - fold, 36 + fold }, { 196, 36 + fold } }));

    const QColor scene(0x9c, 0x9c, 0x9c);
    useStroke(p, scene, 4);
    p.drawRoundedRect(QRectF(80, 96, 96, 92), 6, 6);
    drawDot(p, scene, QPointF(106, 122), 10);
    p.drawPolygon(polygon({ { 84, 184 }, { 116, 142 }, { 136, 166 }, { 150, 150 }, { 172, 184 } }));
}

const Icon icons[] = {
    { "icons/zanmir.png", 256, drawBrand, Tone::Plain, noBadge },
    { "icons/home.png", 36, drawHome, Tone::Plain, noBadge },
    { "icons/info.png", 36, drawInfo, Tone::Plain, noBadge },
    { "icons/help.png", 36, drawHelp, Tone::Plain, noBadge },
    { "icons/appl.png", 36, drawAppl, Tone::Plain, noBadge },
    { "icons/license.png", 36, drawLicense, Tone::Plain, noBadge },
    { "icons/pref.png", 36, drawPref, Tone::Plain, noBadge },
    { "icons/refresh.png", 36, drawRefresh, Tone::Plain, noBadge },
    { "icons/appl_update_yellow.png", 36, drawAppl, Tone::Plain, yellowBadge },
    { "icons/appl_update_red.png", 36, drawAppl, Tone::Plain, redBadge },
    { "icons/newsweb_update_yellow.png", 36, drawInfo, Tone::Plain, yellowBadge },
    { "icons/newsweb_update_red.png", 36, drawInfo, Tone::Plain, redBadge },
    { "icons/howtoweb_update_yellow.png", 36, drawHelp, Tone::Plain, yellowBadge },
    { "icons/howtoweb_update_red.png", 36, drawHelp, Tone::Plain, redBadge },
    { "icons/home_off.png", 36, drawHome, Tone::Dimmed, noBadge },
    { "icons/info_off.png", 36, drawInfo, Tone::Dimmed, noBadge },
    { "icons/help_off.png", 36, drawHelp, Tone::Dimmed, noBadge },
    { "icons/appl_off.png", 36, drawAppl, Tone::Dimmed, noBadge },
    { "icons/license_off.png", 36, drawLicense, Tone::Dimmed, noBadge },
    { "icons/pref_off.png", 36, drawPref, Tone::Dimmed, noBadge },
    { "icons/refresh_off.png", 36, drawRefresh, Tone::Dimmed, noBadge },
    { "icons/appl_off_yellow.png", 36, drawAppl, Tone::Dimmed, yellowBadge },
    { "icons/appl_off_red.png", 36, drawAppl, Tone::Dimmed, redBadge },
    { "icons/pin.png", 25, drawPin, Tone::Plain, noBadge },
    { "icons/nopin.png", 25, drawNoPin, Tone::Plain, noBadge },
    { "icons/checked.png", 25, drawUpdateMark, Tone::Plain, noBadge },
    { "icons/nocheck.png", 25, drawNothing, Tone::Plain, noBadge },
    { "icons/icon_8_mini_arrow_d_g.png", 8, drawComboArrowGrey, Tone::Plain, noBadge },
    { "icons/icon_8_mini_arrow_d_g_l.png", 8, drawComboArrowLight, Tone::Plain, noBadge },
    { "icons/check.png", 32, drawCheck, Tone::Plain, noBadge },
    { "icons/download.png", 40, drawDownload, Tone::Plain, noBadge },
    { "thumbnails/default.png", 256, drawThumbnail, Tone::Plain, noBadge },
};

// The resolutions written: 1x, and 2x for screens scaled to 200 %.
const int scales[] = { 1, 2 };

QImage render(const Icon &icon, int scale)
{
    QImage image(icon.size * scale, icon.size * scale, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(scale, scale);
    const auto toned = [&icon](const QColor &colour) { return icon.tone == Tone::Dimmed ? dimmed(colour) : colour; };
    icon.glyph(p, toned(QColor::fromRgba(lightInk)));
    if (icon.badge != noBadge)
        drawBadge(p, icon.size, toned(QColor::fromRgba(icon.badge)));
    p.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream err(stderr);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2) {
        err << "usage: draw-icons FOLDER\n";
        return 2;
    }
    const QDir folder(arguments.at(1));
    for (const Icon &icon : icons) {
        for (const int scale : scales) {
            // The cards scale the thumbnail themselves; only icons are
            // shown at the screen's own scale.
            if (scale > 1 && !QByteArray(icon.path).startsWith("icons/"))
                continue;
            QString path = folder.filePath(QLatin1String(icon.path));
            if (scale > 1)
                path.replace(QLatin1String(".png"), QStringLiteral("@%1x.png").arg(scale));
            if (!QDir().mkpath(QFileInfo(path).path()) || !render(icon, scale).save(path, "PNG")) {
                err << "draw-icons: cannot write " << path << '\n';
                return 1;
            }
        }
    }
    return 0;
}
