#include "tests/fakes/FakeWorkspace.h"

#include "window/ApplicationNames.h"

#include <QTest>

using namespace Qt::StringLiterals;

class ApplicationNamesTest : public QObject
{
    Q_OBJECT

private slots:
    void anInstalledProgramHasTheNameThatTheDesktopGives();
    void anUnknownIdentifierBecomesAName_data();
    void anUnknownIdentifierBecomesAName();
    void anEmptyNameIsNoName();
    void aNameIsLookedUpOnce();
};

void ApplicationNamesTest::anInstalledProgramHasTheNameThatTheDesktopGives()
{
    FakeWorkspace workspace;
    workspace.names[u"org.example.editor"_s] = u"Text Editor"_s;
    ApplicationNames names(workspace);
    QCOMPARE(names.appDisplayName(u"org.example.editor"_s), u"Text Editor"_s);
}

void ApplicationNamesTest::anUnknownIdentifierBecomesAName_data()
{
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QString>("name");
    QTest::newRow("last part") << u"org.example.viewer"_s << u"Viewer"_s;
    QTest::newRow("hyphens are blanks") << u"org.example.my-tool"_s << u"My Tool"_s;
    QTest::newRow("no dots") << u"xterm"_s << u"Xterm"_s;
    QTest::newRow("capitals within words are lost") << u"org.example.MyTool"_s << u"Mytool"_s;
    QTest::newRow("ends with a dot") << u"org."_s << u""_s;
}

void ApplicationNamesTest::anUnknownIdentifierBecomesAName()
{
    QFETCH(QString, identifier);
    const FakeWorkspace workspace;
    ApplicationNames names(workspace);
    QTEST(names.appDisplayName(identifier), "name");
}

void ApplicationNamesTest::anEmptyNameIsNoName()
{
    FakeWorkspace workspace;
    workspace.names[u"org.example.viewer"_s] = QString();
    ApplicationNames names(workspace);
    QCOMPARE(names.appDisplayName(u"org.example.viewer"_s), u"Viewer"_s);
}

void ApplicationNamesTest::aNameIsLookedUpOnce()
{
    FakeWorkspace workspace;
    ApplicationNames names(workspace);
    names.appDisplayName(u"a.b"_s);
    names.appDisplayName(u"a.b"_s);
    workspace.names[u"a.b"_s] = u"Renamed"_s;
    QCOMPARE(names.appDisplayName(u"a.b"_s), u"B"_s);
    QCOMPARE(workspace.nameLookupCount, 1);
}

QTEST_GUILESS_MAIN(ApplicationNamesTest)
#include "ApplicationNamesTest.moc"
