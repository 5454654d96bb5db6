"""How soon the list follows what is done with it, and what it costs to see all of it."""
import time

from frame_watch import FrameWatch, TurningWheel
from history_panel import HistoryPanel, LIST_TOP, ROW_HEIGHT
from main_thread import MainThreadWatch
from process_figures import ProcessFigures
from screen_watch import Area
from session import milliseconds
from window_figures import WindowFigures

REPEATS = 40
CAPTURES = 20
CAPTURE_DISTANCE = 0.25
FAVORITES_PILL = 5
TAG_PILL = 6
PAUSE = 0.15


class ListFigures:
    def __init__(self, session):
        self.session = session
        self.program = session.program
        self.display = session.display
        self.watch = session.watch
        self.window = WindowFigures(session)

    def rows(self):
        return (
            ("click on a pill to the list drawn: favourites; a tag; all again", "16 ms",
             self.pills),
            ("Page Down to the page drawn", "16 ms", self.page_down),
            ("Delete to the rows below in their new place (the row fades for 250 ms)", "",
             self.delete_key),
            ("captures while the window is open and scrolled: main thread away at most", "20 ms",
             self.away_in_captures),
            ("the same while the wheel turns: longest wait for a frame; without captures", "20 ms",
             self.frames_in_captures),
            ("anonymous memory after scrolling through everything", "45 MiB",
             self.memory_after_scrolling),
            ("the same where every tenth entry is a picture", "45 MiB",
             lambda: self.memory_after_scrolling(has_pictures=True)),
        )

    # Pills

    def pills(self):
        self.session.fresh_start(is_marked=True)
        return "; ".join((self.pill(0, FAVORITES_PILL), self.pill(0, TAG_PILL),
                          self.pill(FAVORITES_PILL, 0)))

    def pill(self, before, number):
        area, panel = self.open()
        pills = panel.pills()
        if number >= len(pills):
            return "no such pill"
        panel.click_pill(number)
        wanted = self.watch.settled_picture(area)
        times = []
        for _ in range(REPEATS):
            panel.click_pill(before)
            old = self.watch.settled_picture(area, quiet=PAUSE)
            times.append(self.time_of(lambda: panel.click_pill(number), area, wanted, old))
        self.window.close_window()
        return milliseconds(times)

    # Keys

    def page_down(self):
        self.session.fresh_start()
        area = self.upper_rows(*self.open_with_list_focus())
        pages = [self.watch.settled_picture(area)]
        for _ in range(REPEATS):
            self.display.press("Next")
            pages.append(self.watch.settled_picture(area, quiet=PAUSE))
        self.display.press("Home")
        times = []
        for page in pages[1:]:
            old = self.watch.settled_picture(area, quiet=PAUSE)
            times.append(self.time_of(lambda: self.display.press("Next"), area, page, old))
        self.window.close_window()
        return milliseconds(times)

    def delete_key(self):
        self.session.fresh_start()
        _, panel = self.open_with_list_focus()
        self.display.press("Home")
        self.display.press("Down")
        below = self.rows_from(panel, 2, 4)
        times = []
        for _ in range(REPEATS // 2):
            old = self.watch.settled_picture(below, quiet=0.3)
            self.watch.forget()
            pressed_at = self.display.press("Delete")
            drawn_at = self.watch.wait_for_change(below, old)
            if drawn_at is None:
                return "nothing is deleted"
            times.append(drawn_at - pressed_at)
        self.window.close_window()
        return milliseconds(times)

    # Captures

    def away_in_captures(self):
        self.session.fresh_start()
        self.open_scrolled()
        with MainThreadWatch(self.program.pid) as watch:
            self.capture_some()
        self.window.close_window()
        return f"{watch.longest * 1000:.1f} ms (of {CAPTURES} captures)"

    def frames_in_captures(self):
        self.session.fresh_start()
        area = self.open_scrolled()
        waits = []
        for act in (self.capture_some, self.capture_none):
            with FrameWatch(self.session.desktop.env["DISPLAY"], area) as frames:
                with TurningWheel(self.display, frames):
                    act()
            waits.append(f"{frames.longest * 1000:.1f} ms")
        self.window.close_window()
        return "; ".join(waits)

    def capture_some(self):
        for _ in range(CAPTURES):
            mark = self.program.mark()
            self.session.owner.own_text(self.session.next_text())
            self.program.wait_for_line("New clipboard item", since=mark)
            time.sleep(CAPTURE_DISTANCE)

    @staticmethod
    def capture_none():
        time.sleep(CAPTURES * CAPTURE_DISTANCE)

    def open_scrolled(self):
        area, panel = self.open_with_list_focus()
        for _ in range(5):
            self.display.press("Next")
        # The wheel turns where the pointer is.
        self.display.click(panel.x + panel.width // 2, panel.row_middle(2))
        self.session.settle(0.3)
        return area

    # Memory

    def memory_after_scrolling(self, has_pictures=False):
        self.session.fresh_start(has_pictures=has_pictures)
        area, panel = self.open_with_list_focus()
        pages = self.session.count // panel.row_count() + 1
        for _ in range(pages):
            self.watch.forget()
            self.display.press("Next")
            self.watch.next_damage(area, time.monotonic() + 0.5)
        self.session.settle()
        answer = ProcessFigures(self.session, 0).memory_now()
        self.window.close_window()
        return answer

    # Steps

    def open(self):
        area, _ = self.window.open_and_settle()
        return area, HistoryPanel(self.display, self.window.window())

    def open_with_list_focus(self):
        area, panel = self.open()
        panel.click_row(0)
        self.watch.settled_picture(area)
        return area, panel

    @staticmethod
    def upper_rows(area, panel):
        """Without the rows that are selected before and behind Page Down, the ground of which goes
        and comes for a while."""
        return Area(area.x, area.y + ROW_HEIGHT, area.width, (panel.row_count() - 3) * ROW_HEIGHT)

    @staticmethod
    def rows_from(panel, first, last):
        return Area(panel.x + 8, panel.y + LIST_TOP + first * ROW_HEIGHT, panel.width - 40,
                    (last - first + 1) * ROW_HEIGHT)

    def time_of(self, act, area, wanted, old):
        self.watch.forget()
        acted_at = act()
        drawn_at = self.watch.wait_for_picture(area, wanted, old)
        return drawn_at and drawn_at - acted_at
