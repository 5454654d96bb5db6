#!/usr/bin/python3
"""Copies that follow each other fast are all in the history, in their order."""
import random
import time

from case import DesktopTest, main
from pictures import noise_png
from waiting import wait_until

COPIES = 200


class BurstTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.program.start()

    def send(self, owners, contents, distance):
        """Copies the contents so many seconds apart, the owners taking turns."""
        last = 0
        for number, content in enumerate(contents):
            # From the last one, and not from the first: a stall of ours is not made up for by haste.
            time.sleep(max(0, last + distance - time.monotonic()))
            last = owners[number % len(owners)].own(content)
        # A mark of its own, behind which nothing is to come.
        time.sleep(distance)
        owners[0].own_text("the end of it")
        self.program.wait_for_text("the end of it")

    def kept(self):
        return self.program.texts()[:0:-1]

    def check_texts(self, distance, owners=1):
        owners = [self.owner() for _ in range(owners)]
        texts = [f"{number} of a burst" for number in range(COPIES)]
        self.send(owners, [{"UTF8_STRING": text.encode()} for text in texts], distance)
        given = {data.decode() for owner in owners for data in owner.given}
        self.assertEqual([text for text in texts if text in given], self.kept(),
                         "what the owners gave is not what was kept")
        self.assertEqual(texts, self.kept(), "some were asked for too late")

    def test_copies_a_quarter_of_a_second_apart(self):
        self.check_texts(0.250)

    def test_copies_a_tenth_of_a_second_apart(self):
        self.check_texts(0.100)

    def test_copies_50_ms_apart(self):
        self.check_texts(0.050)

    def test_copies_20_ms_apart(self):
        self.check_texts(0.020)

    def test_copies_of_two_programs_in_turn(self):
        self.check_texts(0.020, owners=2)

    def test_copies_5_ms_apart_as_far_as_their_owner_gives_them(self):
        """On a machine that is busy elsewhere the next copy may be there before we could ask."""
        owner = self.owner()
        texts = [f"{number} of a fast burst" for number in range(COPIES)]
        self.send([owner], [{"UTF8_STRING": text.encode()} for text in texts], 0.005)
        given = [data.decode() for data in owner.given[:-1]]
        self.assertEqual(given, self.kept())
        self.assertGreater(len(given), COPIES // 2)
        print(f"{len(given)} of {COPIES} copies 5 ms apart were kept", flush=True)

    def test_a_text_that_is_set_three_times_while_it_grows(self):
        owner = self.owner()
        stages = ["first", "first and second", "first and second and third"]
        self.send([owner], [{"UTF8_STRING": text.encode()} for text in stages], 0.010)
        self.assertEqual(stages, self.kept())

    def test_pictures_among_texts(self):
        rng = random.Random(11)
        owner = self.owner()
        contents, kinds = [], []
        for number in range(60):
            is_picture = number % 3 == 1
            kinds.append(("image", None) if is_picture else ("text", f"{number} among pictures"))
            contents.append({"image/png": noise_png(rng, 60, 40)} if is_picture
                            else {"UTF8_STRING": kinds[-1][1].encode()})
        self.send([owner], contents, 0.020)
        rows = wait_until(lambda: self.rows_of(len(kinds) + 1), "the rows of the pictures")
        self.assertEqual(kinds, [(kind, text) for kind, text, _ in rows[:-1]])
        files = [file for kind, _, file in rows if kind == "image"]
        self.assertEqual(len(files), len(set(files)))

    def rows_of(self, count):
        """The rows, the oldest first, once there are so many."""
        rows = self.program.rows("contentTypeRaw, stringValue, imageFileName")[::-1]
        return rows if len(rows) >= count else None


if __name__ == "__main__":
    main()
