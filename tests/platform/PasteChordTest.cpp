#include "platform/x11/PasteChord.h"

#include <QTest>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(PasteChord)

class PasteChordTest : public QObject
{
    Q_OBJECT

private slots:
    void programsTakeTheirChord_data();
    void programsTakeTheirChord();
};

void PasteChordTest::programsTakeTheirChord_data()
{
    QTest::addColumn<QString>("instanceName");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QStringList>("categories");
    QTest::addColumn<PasteChord>("chord");

    const QStringList editor{u"Utility"_s, u"TextEditor"_s};
    const QStringList terminal{u"System"_s, u"TerminalEmulator"_s};
    QTest::newRow("editor") << u"mousepad"_s << u"Mousepad"_s << editor << PasteChord::ControlV;
    QTest::newRow("unknown") << QString() << QString() << QStringList() << PasteChord::ControlV;
    QTest::newRow("known terminal") << u"gnome-terminal-server"_s << u"Gnome-terminal"_s
                                    << QStringList() << PasteChord::ControlShiftV;
    QTest::newRow("terminal by its class")
        << u"main"_s << u"Alacritty"_s << QStringList() << PasteChord::ControlShiftV;
    QTest::newRow("terminal by its entry")
        << u"newterm"_s << u"NewTerm"_s << terminal << PasteChord::ControlShiftV;
    QTest::newRow("xterm") << u"xterm"_s << u"XTerm"_s << terminal << PasteChord::ShiftInsert;
    QTest::newRow("xterm under another name")
        << u"mutt"_s << u"XTerm"_s << terminal << PasteChord::ShiftInsert;
    QTest::newRow("urxvt") << u"urxvt"_s << u"URxvt"_s << terminal << PasteChord::ShiftInsert;
}

void PasteChordTest::programsTakeTheirChord()
{
    QFETCH(QString, instanceName);
    QFETCH(QString, className);
    QFETCH(QStringList, categories);
    QFETCH(PasteChord, chord);

    QCOMPARE(pasteChordFor(instanceName, className, categories), chord);
}

QTEST_APPLESS_MAIN(PasteChordTest)
#include "PasteChordTest.moc"
