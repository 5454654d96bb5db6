#include "platform/linux/MimeTypes.h"

#include "platform/Pasteboard.h"

#include <QTest>

using namespace Qt::StringLiterals;

class MimeTypesTest : public QObject
{
    Q_OBJECT

private slots:
    void targetsStandForIdentifiers_data();
    void targetsStandForIdentifiers();
    void theBestTargetComesFirst();
    void whatIsOfferedUnderAWrongNameIsOnlyRead();
    void whatHasNoCounterpartHasNoTargets();
};

void MimeTypesTest::targetsStandForIdentifiers_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("type");
    const auto row = [](const char *name, const QString &target, QStringView type) {
        QTest::newRow(name) << target << type.toString();
    };
    row("text of X11", u"UTF8_STRING"_s, PasteboardType::kString);
    row("old text of X11", u"STRING"_s, PasteboardType::kString);
    row("plain text", u"text/plain"_s, PasteboardType::kString);
    row("character set in capitals", u"text/plain;charset=UTF-8"_s, PasteboardType::kString);
    row("another character set", u"text/plain;charset=utf-16"_s, {});
    row("HTML", u"text/html"_s, PasteboardType::kHtml);
    row("RTF by its older name", u"application/rtf"_s, PasteboardType::kRtf);
    row("RTF as office programs call it", u"text/richtext"_s, PasteboardType::kRtf);
    row("files", u"text/uri-list"_s, PasteboardType::kFileUrl);
    row("files of GNOME", u"x-special/gnome-copied-files"_s, PasteboardType::kFileUrl);
    row("files of MATE", u"x-special/mate-copied-files"_s, PasteboardType::kFileUrl);
    row("TIFF", u"image/tiff"_s, PasteboardType::kTiff);
    row("PNG", u"image/png"_s, PasteboardType::kPng);
    row("JPEG", u"image/jpeg"_s, PasteboardType::kJpeg);
    row("another picture", u"image/bmp"_s, PasteboardType::kImage);
    row("from another machine", u"com.apple.is-remote-clipboard"_s,
        PasteboardType::kRemoteClipboard);
    row("question for the offer", u"TARGETS"_s, {});
    row("names of X11 in another case", u"utf8_string"_s, {});
    row("a toolkit's own", u"GTK_TEXT_BUFFER_CONTENTS"_s, {});
}

void MimeTypesTest::targetsStandForIdentifiers()
{
    QFETCH(QString, target);
    QFETCH(QString, type);
    QCOMPARE(MimeTypes::typeOf(target).toString(), type);
}

void MimeTypesTest::theBestTargetComesFirst()
{
    QCOMPARE(MimeTypes::targetsFor(PasteboardType::kString),
             (QStringList{u"UTF8_STRING"_s, u"text/plain;charset=utf-8"_s, u"text/plain"_s,
                          u"STRING"_s}));
    QCOMPARE(MimeTypes::targetsFor(PasteboardType::kFileUrl),
             (QStringList{u"text/uri-list"_s, u"x-special/gnome-copied-files"_s,
                          u"x-special/mate-copied-files"_s}));
}

void MimeTypesTest::whatIsOfferedUnderAWrongNameIsOnlyRead()
{
    QVERIFY(MimeTypes::targetsFor(PasteboardType::kRtf).contains(u"text/richtext"_s));
    QCOMPARE(MimeTypes::targetsToOffer(PasteboardType::kRtf),
             (QStringList{u"text/rtf"_s, u"application/rtf"_s}));
}

void MimeTypesTest::whatHasNoCounterpartHasNoTargets()
{
    QVERIFY(MimeTypes::targetsFor(PasteboardType::kImage).isEmpty());
    QVERIFY(MimeTypes::targetsToOffer(PasteboardType::kImage).isEmpty());
}

QTEST_GUILESS_MAIN(MimeTypesTest)
#include "MimeTypesTest.moc"
