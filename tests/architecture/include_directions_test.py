#!/usr/bin/python3
"""The sources keep to the include directions; and the check that says so finds what breaks them."""
import argparse
import os
import sys
import tempfile
import unittest

from include_directions import Rules, widget_headers

arguments = None


class IncludeDirectionsTest(unittest.TestCase):
    def setUp(self):
        self.rules = Rules(widget_headers(arguments.qt_headers))

    def is_refused(self, file, include):
        return bool(self.rules.violations(file, f"#pragma once\n\n#include {include}\n"))

    def assert_refused(self, file, include):
        self.assertTrue(self.is_refused(file, include), f"{file} may include {include}")

    def assert_allowed(self, file, include):
        self.assertFalse(self.is_refused(file, include), f"{file} may not include {include}")

    def test_the_sources_keep_to_the_table(self):
        found = self.rules.violations_below(arguments.sources)
        self.assertEqual([], found, "\n" + "\n".join(map(str, found)))

    def test_there_are_sources_to_look_at(self):
        self.rules.reason_against = lambda *_: "anything"
        self.assertGreater(len(self.rules.violations_below(arguments.sources)), 50)

    def test_a_folder_includes_what_stands_below_it(self):
        self.assert_allowed("app/AppDelegate.cpp", '"window/HistoryList.h"')
        self.assert_allowed("window/HistoryList.cpp", '"core/ClipboardItem.h"')
        self.assert_allowed("core/ClipboardItem.h", '"foundation/Timestamp.h"')
        self.assert_allowed("core/ClipboardItem.h", "<QString>")
        self.assert_allowed("platform/x11/X11Pasteboard.cpp", '"platform/linux/MimeTypes.h"')

    def test_a_folder_does_not_include_what_stands_above_it(self):
        self.assert_refused("core/ClipboardItem.cpp", '"window/HistoryList.h"')
        self.assert_refused("foundation/Digest.cpp", '"core/ClipboardItem.h"')
        self.assert_refused("platform/Pasteboard.h", '"core/ClipboardItem.h"')
        self.assert_refused("platform/Pasteboard.h", '"platform/linux/MimeTypes.h"')
        self.assert_refused("window/HistoryList.cpp", '"app/AppDelegate.h"')
        self.assert_refused("settings/ShortcutsPane.cpp", '"window/HistoryList.h"')

    def test_neighbours_do_not_include_each_other(self):
        self.assert_refused("capture/ClipboardMonitor.cpp", '"tags/TagManager.h"')
        self.assert_refused("preview/TextMatches.cpp", '"capture/ClipboardMonitor.h"')
        self.assert_refused("persistence/Store.cpp", '"tags/Tag.h"')
        self.assert_refused("platform/x11/X11Platform.cpp", '"platform/wayland/Seat.h"')

    def test_only_main_names_a_backend(self):
        self.assert_refused("app/AppDelegate.cpp", '"persistence/Store.h"')
        self.assert_refused("app/AppDelegate.cpp", '"platform/x11/X11Platform.h"')
        self.assert_refused("window/HistoryList.cpp", '"platform/linux/SystemClock.h"')
        self.assert_allowed("main.cpp", '"platform/x11/X11Platform.h"')
        self.assert_allowed("persistence/Store.cpp", '"persistence/Row.h"')

    def test_native_headers_stay_behind_their_doors(self):
        for include in ("<X11/Xlib.h>", "<xcb/xcb.h>", "<wayland-client.h>", "<QDBusConnection>",
                        "<QtDBus/QDBusInterface>", "<dbus/dbus.h>", "<xkbcommon/xkbcommon.h>"):
            self.assert_refused("app/AppDelegate.cpp", include)
            self.assert_refused("platform/Pasteboard.h", include)
            self.assert_allowed("platform/x11/X11Pasteboard.cpp", include)
        self.assert_refused("platform/x11/X11Pasteboard.h", "<xcb/xcb.h>")
        self.assert_refused("core/ClipboardItemManager.cpp", "<sqlite3.h>")
        self.assert_refused("persistence/Store.h", "<sqlite3.h>")
        self.assert_allowed("persistence/Store.cpp", "<sqlite3.h>")

    def test_a_header_that_only_wraps_a_native_one_counts_as_native(self):
        with tempfile.TemporaryDirectory() as sources:
            folder = os.path.join(sources, "platform", "x11")
            os.makedirs(folder)
            files = {"Wrapper.h": "// Why.\n#pragma once\n#define a b\n#include <xcb/xkb.h>\n",
                     "Keyboard.cpp": '#include "platform/x11/Wrapper.h"\n',
                     "Keyboard.h": '#include "platform/x11/Wrapper.h"\n',
                     "Mouse.h": "#include <xcb/xcb.h>\nclass Mouse;\n"}
            for name, text in files.items():
                with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                    file.write(text)
            found = {os.path.basename(one.file) for one in self.rules.violations_below(sources)}
        self.assertEqual({"Keyboard.h", "Mouse.h"}, found)

    def test_the_core_and_what_is_below_know_no_widget(self):
        for include in ("<QWidget>", "<QtWidgets>", "<QtWidgets/QLabel>", "<qlistview.h>"):
            self.assert_refused("core/ClipboardItemManager.cpp", include)
            self.assert_refused("foundation/Log.cpp", include)
            self.assert_allowed("window/HistoryList.cpp", include)
        self.assert_allowed("platform/linux/Icons.cpp", "<QAction>")

    def test_a_path_starts_at_the_root(self):
        self.assert_refused("core/ClipboardItem.cpp", '"ClipboardItem.h"')
        self.assert_refused("core/ClipboardItem.cpp", '"../foundation/Digest.h"')
        self.assert_allowed("core/ClipboardItem.cpp", '"ClipboardItem.moc"')

    def test_a_new_folder_needs_a_place_in_the_table(self):
        self.assert_refused("gadgets/Gadget.cpp", "<QString>")
        self.assert_refused("core/ClipboardItem.cpp", '"gadgets/Gadget.h"')

    def test_an_include_in_a_comment_does_not_count(self):
        text = '/* #include "window/HistoryList.h" */\n// #include <QWidget>\n'
        self.assertEqual([], self.rules.violations("core/ClipboardItem.cpp", text))


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--sources", required=True)
    parser.add_argument("--qt-headers", required=True, help="the folder that holds QtWidgets/")
    arguments, rest = parser.parse_known_args()
    unittest.main(argv=sys.argv[:1] + rest, verbosity=2)
