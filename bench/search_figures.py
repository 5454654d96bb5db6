"""How soon the list follows a word that is typed into the search field.

Each letter is sent a moment after the one before is drawn, as people type. What the list looks like
behind each letter is known from an earlier search.
"""
import itertools
import random

import corpus
from session import milliseconds
from window_figures import WindowFigures

LETTER_REACH = "16 ms; 95 %: 33 ms"
WORDS = 8
REPEATS = 5  # Of each word.
LETTERS = 3
BEGINNING = 4  # Letters of a word that is not there, without its last.
RARE_LETTERS = "qxzjvwk"
PAUSE = 0.15
ROWS_IN_SIGHT = 6


class SearchWords:
    """Words to be searched for; each letter changes which entries come first."""

    def __init__(self, texts):
        self.texts = [text.lower() for text in texts]

    def first_matches(self, word):
        matching = (index for index, text in enumerate(self.texts) if word in text)
        return list(itertools.islice(matching, ROWS_IN_SIGHT))

    def is_visible_step(self, word):
        return self.first_matches(word) != self.first_matches(word[:-1])

    def words(self, count):
        """So many of the corpus, from its whole width."""
        rng = random.Random(corpus.SEED)
        vocabulary = corpus.make_words(rng)
        rng.shuffle(vocabulary)
        return list(itertools.islice(filter(self.is_good, vocabulary), count))

    def is_good(self, word):
        prefixes = [word[:length] for length in range(1, LETTERS + 1)]
        return (len(word) > LETTERS and all(map(self.is_visible_step, prefixes))
                and bool(self.first_matches(word[:LETTERS])))

    def absent(self, count):
        """Beginnings that are in some texts, each with a letter that never follows it."""
        found = ((word[:BEGINNING], self.letter_never_behind(word[:BEGINNING]))
                 for word in self.words(4 * count))
        return list(itertools.islice((pair for pair in found if pair[1]), count))

    def letter_never_behind(self, beginning):
        return next((letter for letter in RARE_LETTERS
                     if not self.first_matches(beginning + letter)), None)


class SearchFigures:
    def __init__(self, session):
        self.session = session
        self.window = WindowFigures(session)
        self.found_words = {}

    def rows(self):
        return (
            ("first; second; third letter of a search, to the narrowed list drawn", LETTER_REACH,
             self.letters),
            ("last letter of a word that is not there, to the empty list drawn", LETTER_REACH,
             self.last_letter_of_absent_word),
            ("a word that is not there, typed at once, to the empty list drawn", "",
             self.absent_word_at_once),
        )

    def letters(self):
        times = self.times([tuple(word[:LETTERS]) for word in self.words().words(WORDS)])
        return "; ".join(milliseconds(letter) for letter in zip(*times))

    def last_letter_of_absent_word(self):
        return milliseconds([times[-1] for times in self.times(self.words().absent(WORDS))])

    def absent_word_at_once(self):
        words = [("".join(pieces),) for pieces in self.words().absent(WORDS)]
        return milliseconds([times[0] for times in self.times(words)])

    def words(self):
        count = self.session.count
        if count not in self.found_words:
            self.found_words[count] = SearchWords(corpus.corpus(count))
        return self.found_words[count]

    # One search

    def times(self, words):
        """For each search the seconds that each piece of its word took."""
        self.session.fresh_start()
        known = {pieces: self.pictures(pieces) for pieces in words}
        return [self.times_of_pieces(pieces, known[pieces])
                for _ in range(REPEATS) for pieces in words]

    def pictures(self, pieces):
        """What the list looks like behind each piece."""
        area, _ = self.window.open_and_settle()
        seen = []
        for piece in pieces:
            self.window.type(piece)
            seen.append(self.session.watch.settled_picture(area))
        self.window.close_window()
        return seen

    def times_of_pieces(self, pieces, wanted):
        # Opened anew each time, so that nothing was prepared by an earlier search.
        self.window.open_and_settle()
        self.session.settle(0.3)
        times = [self.time_of(piece, picture) for piece, picture in zip(pieces, wanted)]
        self.window.close_window()
        return times

    def time_of(self, letters, wanted):
        """Seconds from the first of the letters until the list looks as wanted."""
        watch = self.session.watch
        area = self.window.area()
        old = watch.settled_picture(area, quiet=PAUSE)
        watch.forget()
        pressed_at = self.window.type(letters)
        drawn_at = watch.wait_for_picture(area, wanted, old)
        return drawn_at and drawn_at - pressed_at
