#!/usr/bin/python3
"""An owner of the clipboard that does not keep to the rules costs its own copy, and nothing else;
who asks for ours without measure costs nothing."""
import os
import sys

from case import main
from hostile_case import HostileTest
from waiting import wait_until

HERE = os.path.dirname(os.path.abspath(__file__))
HOSTILE_OWNER = os.path.join(HERE, "hostile_owner.py")
HOSTILE_REQUESTOR = os.path.join(HERE, "hostile_requestor.py")


class HostileOwnerTest(HostileTest):
    def start_hostile_owner(self, mood):
        before = self.display.selection_owner()
        owner = self.desktop.spawn(sys.executable, "-B", HOSTILE_OWNER, mood,
                                   "--offer", "UTF8_STRING:=" + "what never comes through " * 200)
        self.addCleanup(owner.wait, 5)
        self.addCleanup(owner.terminate)
        wait_until(lambda: self.display.selection_owner() != before, "the owner to take over")

    def check_mood(self, mood):
        self.check(lambda: self.start_hostile_owner(mood))

    def test_one_that_never_answers(self):
        self.check_mood("silent")

    def test_one_that_only_says_what_it_has(self):
        self.check_mood("mute")

    def test_one_that_refuses_what_it_offers(self):
        self.check_mood("refusing")

    def test_one_that_stops_half_way(self):
        self.check_mood("half")

    def test_one_that_trickles(self):
        self.check_mood("trickle")

    def test_one_that_dies_when_asked(self):
        self.check_mood("dying")

    def test_one_that_dies_half_way(self):
        self.check_mood("halfdying")

    def test_one_that_answers_numbers(self):
        self.check_mood("wrongtype")

    def test_one_that_tells_its_offer_as_text(self):
        self.check_mood("wrongoffer")

    def test_one_that_offers_a_hundred_thousand_targets(self):
        self.check_mood("flood")

    def test_one_that_offers_what_does_not_exist(self):
        self.check_mood("noatoms")

    def test_one_that_announces_too_much(self):
        self.check_mood("liar")

    def test_one_that_announces_and_has_nothing(self):
        self.check_mood("empty")

    def test_one_that_deletes_its_answer(self):
        self.check_mood("deleting")

    def test_one_that_gives_what_it_has_refused(self):
        self.check_mood("late")

    def test_one_that_answers_elsewhere(self):
        self.check_mood("elsewhere")

    def test_one_that_takes_over_before_each_answer(self):
        self.check_mood("restless")

    def test_one_that_takes_over_behind_each_answer(self):
        self.check_mood("hasty")

    def test_one_that_takes_over_ten_thousand_times(self):
        self.check_mood("changing")

    def test_one_that_tells_of_pieces_without_end(self):
        self.check_mood("noisy")

    def test_one_who_asks_us_twenty_thousand_times(self):
        self.choose("beta")
        self.wait_until_closed()
        self.check(lambda: self.desktop.spawn(sys.executable, "-B", HOSTILE_REQUESTOR, "flood"))


if __name__ == "__main__":
    main()
