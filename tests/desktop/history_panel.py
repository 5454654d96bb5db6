"""The history window as a person sees it: where its rows, stars and pills are, found by its pixels,
so that nothing is known of the program but how it looks."""
from waiting import wait_until

PILL_LINE = 65  # The upper line of the pills, below the upper edge of the window.
PILL_MIDDLE = 78
LEAST_PILL_WIDTH = 8  # Of the straight part of that line.
LIST_TOP = 100
ROW_HEIGHT = 72
STAR_FROM_RIGHT = 29
GROUND_X = 14  # Inside of the selected row's ground, left of the icon.
EDGE_X = 4  # Left of that ground.
CLEARLY = 90  # By so much two colours differ that nobody takes one for the other.


class HistoryPanel:
    """Works on a desktop without a compositor, and while nothing fades."""

    def __init__(self, display, window):
        self.display = display
        self.window = window
        self.x, self.y, self.width, self.height = display.place(window)

    # Rows, counted from the first that is seen whole

    def row_count(self):
        """How many rows there is room for, whole ones."""
        return (self.height - LIST_TOP) // ROW_HEIGHT

    def row_middle(self, row):
        return self.y + LIST_TOP + row * ROW_HEIGHT + ROW_HEIGHT // 2

    def click_row(self, row, button=1):
        self.display.click(self.x + self.width // 2, self.row_middle(row), button)

    def click_star(self, row):
        self.display.click(self.x + self.width - STAR_FROM_RIGHT, self.row_middle(row))

    def star_picture(self, row):
        return self.display.pixels(self.x + self.width - STAR_FROM_RIGHT - 13,
                                   self.row_middle(row) - 13, 26, 26)

    def row_picture(self, row):
        return self.display.pixels(self.x, self.row_middle(row) - ROW_HEIGHT // 2,
                                   self.width - 16, ROW_HEIGHT)

    def selected_row(self):
        """None if no whole row is selected."""
        return next((row for row in range(self.row_count()) if self.is_selected(row)), None)

    def is_selected(self, row):
        middle = self.row_middle(row)
        ground, edge = (self.pixel(self.x + x, middle) for x in (GROUND_X, EDGE_X))
        return distance(ground, edge) > CLEARLY

    def wait_until_selected(self, row):
        wait_until(lambda: self.selected_row() == row,
                   lambda: f"row {row} to be the selected one; it is {self.selected_row()}")

    # Pills, from the left

    def pills(self):
        """The middle of each pill, as x on the screen."""
        line = self.display.pixels(self.x, self.y + PILL_LINE, self.width, 1)
        colors = [tuple(line[at:at + 3]) for at in range(0, len(line), 4)]
        ground = colors[10]
        middles, begin = [], None
        for at, color in enumerate(colors):
            is_line = distance(color, ground) > 4
            if is_line and begin is None:
                begin = at
            elif not is_line and begin is not None:
                if at - begin >= LEAST_PILL_WIDTH:
                    middles.append(self.x + (begin + at) // 2)
                begin = None
        return middles

    def click_pill(self, number):
        """Counted from 0; negative numbers count from the right, as for lists."""
        return self.display.click(self.pills()[number], self.y + PILL_MIDDLE)

    def is_pill_selected(self, number):
        ground = self.pixel(self.x + 10, self.y + PILL_LINE + 2)
        return distance(self.pixel(self.pills()[number], self.y + PILL_LINE + 2), ground) > CLEARLY

    # Pixels

    def picture(self):
        return self.display.pixels(self.x, self.y, self.width, self.height)

    def list_picture(self):
        """The rows, without the scroller that comes and goes on their right."""
        return self.display.pixels(self.x, self.y + LIST_TOP, self.width - 16,
                                   self.height - LIST_TOP)

    def pixel(self, x, y):
        return tuple(self.display.pixels(x, y, 1, 1)[:3])


def distance(one, other):
    return sum(abs(a - b) for a, b in zip(one, other))
