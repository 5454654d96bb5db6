#include "platform/linux/SelectionPlan.h"

#include "platform/Pasteboard.h"

#include <QTest>

using namespace Qt::StringLiterals;

class SelectionPlanTest : public QObject
{
    Q_OBJECT

private slots:
    void typesKeepTheOrderOfTheOffer();
    void targetsAreAskedAsTheOwnerSpellsThem();
    void eachFormThatIsOfferedIsPlanned();
    void picturesAreSortedByHowWellWeKnowThem();
    void theMarkOfPasswordManagersIsSeen();
    void privateTypesAreNotAskedFor();
};

void SelectionPlanTest::typesKeepTheOrderOfTheOffer()
{
    const auto plan = SelectionPlan::fromTargets({u"TARGETS"_s, u"text/html"_s, u"text/plain"_s,
                                                  u"UTF8_STRING"_s, u"image/bmp"_s, u"image/x"_s});
    QCOMPARE(plan.types,
             (QStringList{PasteboardType::kHtml.toString(), PasteboardType::kString.toString(),
                          PasteboardType::kImage.toString()}));
}

void SelectionPlanTest::targetsAreAskedAsTheOwnerSpellsThem()
{
    const auto plan = SelectionPlan::fromTargets({u"STRING"_s, u"text/plain;charset=UTF-8"_s});
    QCOMPARE(plan.textTargets, (QStringList{u"text/plain;charset=UTF-8"_s, u"STRING"_s}));
}

void SelectionPlanTest::eachFormThatIsOfferedIsPlanned()
{
    const auto plan = SelectionPlan::fromTargets({u"image/png"_s, u"x-special/gnome-copied-files"_s,
                                                  u"text/uri-list"_s, u"STRING"_s, u"text/html"_s,
                                                  u"application/rtf"_s});
    QCOMPARE(plan.textTargets, QStringList{u"STRING"_s});
    QCOMPARE(plan.htmlTargets, QStringList{u"text/html"_s});
    QCOMPARE(plan.rtfTargets, QStringList{u"application/rtf"_s});
    QCOMPARE(plan.fileTargets,
             (QStringList{u"text/uri-list"_s, u"x-special/gnome-copied-files"_s}));
    QCOMPARE(plan.pictureTargets, QStringList{u"image/png"_s});
}

void SelectionPlanTest::picturesAreSortedByHowWellWeKnowThem()
{
    const auto plan = SelectionPlan::fromTargets(
        {u"image/webp"_s, u"image/bmp"_s, u"image/jpeg"_s, u"image/tiff"_s, u"image/png"_s});
    QCOMPARE(plan.pictureTargets, (QStringList{u"image/png"_s, u"image/tiff"_s, u"image/jpeg"_s,
                                               u"image/bmp"_s, u"image/webp"_s}));
}

void SelectionPlanTest::theMarkOfPasswordManagersIsSeen()
{
    QVERIFY(SelectionPlan::fromTargets({u"UTF8_STRING"_s, u"x-kde-passwordManagerHint"_s})
                .isMarkedByPasswordManager);
    QVERIFY(!SelectionPlan::fromTargets({u"UTF8_STRING"_s}).isMarkedByPasswordManager);
}

void SelectionPlanTest::privateTypesAreNotAskedFor()
{
    const auto plan = SelectionPlan::fromTargets(
        {u"GTK_TEXT_BUFFER_CONTENTS"_s, u"application/vnd.portal.files"_s, u"SAVE_TARGETS"_s});
    QVERIFY(plan.types.isEmpty() && plan.textTargets.isEmpty() && plan.fileTargets.isEmpty() &&
            plan.pictureTargets.isEmpty());
}

QTEST_GUILESS_MAIN(SelectionPlanTest)
#include "SelectionPlanTest.moc"
