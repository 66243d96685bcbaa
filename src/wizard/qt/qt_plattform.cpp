#include "wizard/qt/qt_plattform.h"

#include "frame/form.h"
#include "frame/globals.h"

#include <QApplication>
#include <QCheckBox>
#include <QColor>
#include <QDesktopServices>
#include <QLibraryInfo>
#include <QLocale>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QThread>
#include <QTranslator>
#include <QUrl>
#include <QWidget>

#include <algorithm>
#include <climits>
#include <cmath>

namespace folio::qt {

namespace {

// The buttons of a message box by the lowest bits of its style, with the answers they give.
std::vector<std::pair<QMessageBox::StandardButton, int>> knoepfe(int stil) {
    using B = QMessageBox;
    switch (stil & 7) {
    case 1:
        return {{B::Ok, AntwortOk}, {B::Cancel, AntwortAbbrechen}};
    case 2:
        return {{B::Abort, 3}, {B::Retry, 4}, {B::Ignore, 5}};
    case 3:
        return {{B::Yes, AntwortJa}, {B::No, AntwortNein}, {B::Cancel, AntwortAbbrechen}};
    case 4:
        return {{B::Yes, AntwortJa}, {B::No, AntwortNein}};
    case 5:
        return {{B::Retry, 4}, {B::Cancel, AntwortAbbrechen}};
    default:
        return {{B::Ok, AntwortOk}};
    }
}

QMessageBox::Icon symbol(int stil) {
    switch (stil & 0x70) {
    case 16:
        return QMessageBox::Critical;
    case 32:
        return QMessageBox::Question;
    case 48:
        return QMessageBox::Warning;
    case 64:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

QString ohne_wagenruecklauf(const std::string& text) {
    QString t = QString::fromStdString(text);
    t.remove(QLatin1Char('\r'));
    return t;
}

QtPlattform* aktuelle = nullptr;

} // namespace

QtPlattform::QtPlattform() {
    aktuelle = this;
    seit_abgleich_.start();
}

void qt_texte_laden() {
    static QTranslator texte;
    QCoreApplication::removeTranslator(&texte);
    // The program knows German and English; Qt's texts are English by themselves.
    if (Sprache == "Deutsch" &&
        texte.load(QLocale(QLocale::German), QStringLiteral("qtbase"), QStringLiteral("_"),
                   QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&texte);
}

QtPlattform::~QtPlattform() {
    if (aktuelle == this)
        aktuelle = nullptr;
}

QtPlattform* qt_plattform() {
    return dynamic_cast<QtPlattform*>(&platform()) ? aktuelle : nullptr;
}

MessageAnswer QtPlattform::showMessage(const MessageRequest& request) {
    abgleichen(true);
    QMessageBox box(QApplication::activeWindow());
    box.setWindowTitle(QString::fromStdString(request.title));
    box.setText(ohne_wagenruecklauf(request.text));
    box.setIcon(symbol(request.style));
    const auto moegliche = knoepfe(request.style);
    std::vector<std::pair<QAbstractButton*, int>> antworten;
    for (const auto& [knopf, antwort] : moegliche)
        antworten.emplace_back(box.addButton(knopf), antwort);
    const std::size_t standard = static_cast<std::size_t>((request.style & 0x300) >> 8);
    if (standard < antworten.size())
        box.setDefaultButton(static_cast<QPushButton*>(antworten[standard].first));
    QCheckBox* haken = nullptr;
    if (request.checkboxShown) {
        haken = new QCheckBox(QString::fromStdString(request.checkboxText), &box);
        haken->setChecked(request.checkboxValue == 1);
        box.setCheckBox(haken);
    }
    QApplication::setOverrideCursor(Qt::ArrowCursor);
    box.exec();
    QApplication::restoreOverrideCursor();
    MessageAnswer antwort{moegliche.back().second, request.checkboxValue};
    for (const auto& [knopf, wert] : antworten)
        if (box.clickedButton() == knopf)
            antwort.button = wert;
    if (haken)
        antwort.checkboxValue = haken->isChecked() ? 1 : 0;
    return antwort;
}

void QtPlattform::abgleichen(bool sofort) {
    if (!sofort && seit_abgleich_.elapsed() < 40)
        return;
    seit_abgleich_.restart();
    for (const auto& a : abgleicher)
        a();
}

void QtPlattform::doEvents() {
    abgleichen(false);
    QCoreApplication::processEvents();
}

void QtPlattform::repaint(Form&, Control*) {
    abgleichen(false);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void QtPlattform::sleep(int milliseconds) {
    QElapsedTimer uhr;
    uhr.start();
    while (uhr.elapsed() < milliseconds) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(10);
    }
}

int QtPlattform::screenWidth() const {
    const QScreen* s = QGuiApplication::primaryScreen();
    return s ? s->availableGeometry().width() * TwipsProPixel : Platform::screenWidth();
}

int QtPlattform::screenHeight() const {
    const QScreen* s = QGuiApplication::primaryScreen();
    return s ? s->availableGeometry().height() * TwipsProPixel : Platform::screenHeight();
}

namespace {

// Twips to the pixel in the font of `w`.
double massstab(const QWidget* w) {
    constexpr double Ziffernbreite = 6;
    const double ziffer = w->fontMetrics().horizontalAdvance(QLatin1Char('0'));
    return TwipsProPixel * Ziffernbreite / std::max(ziffer, Ziffernbreite);
}

} // namespace

int in_pixel(const QWidget* w, int twips) {
    return static_cast<int>(std::lround(twips / massstab(w)));
}

int in_twips(const QWidget* w, int pixel) {
    return static_cast<int>(std::lround(pixel * massstab(w)));
}

int als_int(std::int64_t n) {
    return static_cast<int>(std::clamp<std::int64_t>(n, 0, INT_MAX));
}

void balken_zeigen(QProgressBar* balken, const Control& control) {
    balken->setMaximum(als_int(control.get("Max").toInt()));
    balken->setValue(als_int(control.get("Value").toInt()));
}

QColor farbe(long wert) {
    return QColor(static_cast<int>(wert & 0xff), static_cast<int>((wert >> 8) & 0xff),
                  static_cast<int>((wert >> 16) & 0xff));
}

void QtPlattform::oeffnen(const std::string& datei) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(datei)));
}

Sanduhr::Sanduhr() {
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

Sanduhr::~Sanduhr() {
    QApplication::restoreOverrideCursor();
}

} // namespace folio::qt
