#!/usr/bin/python3
"""Every text that the sources look up is in the table of each language, and the tables agree."""
import argparse
import json
import pathlib
import re
import sys
import unittest

LANGUAGES = ("en", "zh-Hans")
KEY = r"[a-z][a-z0-9_]*(?:\.[a-z0-9_]+)+"
CALL = re.compile(r"\blocalized\(\s*[^)\s]")
LITERAL_CALL = re.compile(r'\blocalized\(\s*u"(' + KEY + r')"_s\s*,')
LITERAL = re.compile(r'u"(' + KEY + r')"_s')
PLACEHOLDER = re.compile(r"%(?:lld|d|@|%)")
CHINESE = re.compile(r"[\u4e00-\u9fff]")
# Half-width marks beside Chinese, three dots, and blanks beside full-width marks.
FOREIGN_MARKS = re.compile(r"[\u4e00-\u9fff]\s*[,.;:!?()]|[,.;:!?()]\s*[\u4e00-\u9fff]|\.\.\."
                           r"|[，。：；！？（）]\s|\s[，。：；！？（）]")
KEY_AND_FALLBACK = re.compile(r'\bu"(' + KEY + r')"_s,\s*u"((?:[^"\\\n]|\\.)*)"_s')
# Names, and keys of a keyboard.
SAME_IN_ALL_LANGUAGES = {
    "settings.about.app_name", "settings.language.english", "settings.language.chinese",
    "settings.shortcuts.cmd", "settings.shortcuts.shift", "settings.shortcuts.option",
    "settings.shortcuts.control"}
LOOK_UP_ITSELF = "language/Localized."
OTHER_SYSTEMS = re.compile(r"\bFinder\b|访达|\bMac\b|macOS|⌘|⌥|\bCommand\b|\bOption\b")

arguments = None


def unique_keys(pairs):
    keys = [key for key, _ in pairs]
    repeated = sorted({key for key in keys if keys.count(key) > 1})
    if repeated:
        raise ValueError(f"more than once: {repeated}")
    return dict(pairs)


def table(language):
    path = pathlib.Path(arguments.tables) / f"{language}.lproj" / "Localizable.json"
    return json.loads(path.read_text(encoding="utf-8"), object_pairs_hook=unique_keys)


def sources():
    root = pathlib.Path(arguments.sources)
    for path in sorted([*root.rglob("*.cpp"), *root.rglob("*.h")]):
        name = path.relative_to(root).as_posix()
        if not name.startswith(LOOK_UP_ITSELF):
            yield name, path.read_text(encoding="utf-8")


def used_keys(text, groups):
    """The keys that a file looks up: those written in the calls, and where a call is given a
    variable, whatever else in the file is spelled like a key of the tables."""
    literal = LITERAL_CALL.findall(text)
    calls = CALL.findall(text)
    if len(literal) == len(calls):
        return set(literal)
    spelled = {key for key in LITERAL.findall(text) if key.split(".")[0] in groups}
    return set(literal) | spelled


class LanguageTablesTest(unittest.TestCase):
    def setUp(self):
        self.tables = {language: table(language) for language in LANGUAGES}
        self.groups = {key.split(".")[0] for key in self.tables["en"]}

    def test_every_text_that_is_looked_up_is_there(self):
        looking = 0
        for name, text in sources():
            if not CALL.search(text):
                continue
            looking += 1
            keys = used_keys(text, self.groups)
            self.assertTrue(keys, f"{name} looks up texts, but no key can be seen in it")
            for language, texts in self.tables.items():
                self.assertEqual([], sorted(keys - set(texts)), f"{name}: missing in {language}")
        self.assertGreater(looking, 5, "the sources were not found")

    def test_a_missing_text_would_be_noticed(self):
        self.assertEqual({"menu.no_such"}, used_keys('localized(u"menu.no_such"_s, u"x"_s)', {"menu"}))
        self.assertEqual({"menu.a", "menu.b"}, used_keys(
            'list{{u"menu.a"_s, u"A"_s}, {u"menu.b"_s, u"file.txt"_s}}; localized(each.key, each.text)',
            {"menu"}))

    def test_all_languages_have_the_same_keys(self):
        keys = {language: sorted(texts) for language, texts in self.tables.items()}
        self.assertEqual(keys["en"], keys["zh-Hans"])
        for key in keys["en"]:
            self.assertRegex(key, f"^{KEY}$")

    def test_all_languages_fill_in_the_same(self):
        for key, text in self.tables["en"].items():
            self.assertEqual(PLACEHOLDER.findall(text),
                             PLACEHOLDER.findall(self.tables["zh-Hans"][key]), key)

    def test_no_text_is_empty_or_frayed(self):
        for texts in self.tables.values():
            for key, text in texts.items():
                self.assertTrue(text, key)
                self.assertEqual(text.strip(), text, key)

    def test_each_language_is_its_own(self):
        for key in self.tables["en"]:
            if key in SAME_IN_ALL_LANGUAGES:
                self.assertEqual(self.tables["en"][key], self.tables["zh-Hans"][key])
                continue
            self.assertNotRegex(self.tables["en"][key], CHINESE, key)
            self.assertRegex(self.tables["zh-Hans"][key], CHINESE, key)

    def test_chinese_is_set_with_its_own_marks(self):
        for key, text in self.tables["zh-Hans"].items():
            self.assertNotRegex(text, FOREIGN_MARKS, key)
        for text in ("中文, 标点", "正在录制...", "版本 （1.0）", "语言:"):
            self.assertRegex(text, FOREIGN_MARKS)

    def test_english_fallbacks_are_what_the_table_says(self):
        pairs = [pair for _, text in sources() for pair in KEY_AND_FALLBACK.findall(text)
                 if pair[0] in self.tables["en"]]
        self.assertGreater(len(pairs), 20, "the fallbacks were not found")
        for key, fallback in pairs:
            if not CHINESE.search(fallback) and not OTHER_SYSTEMS.search(fallback):
                self.assertEqual(self.tables["en"][key], fallback, key)

    def test_no_text_speaks_of_another_system(self):
        for texts in self.tables.values():
            for key, text in texts.items():
                self.assertNotRegex(text, OTHER_SYSTEMS, key)


def main():
    global arguments
    parser = argparse.ArgumentParser()
    parser.add_argument("--sources", required=True)
    parser.add_argument("--tables", required=True)
    arguments, rest = parser.parse_known_args()
    unittest.main(argv=sys.argv[:1] + rest, verbosity=2)


if __name__ == "__main__":
    main()
