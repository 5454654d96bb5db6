"""Waiting for a condition with a deadline, in place of sleeping and hoping."""
import time


class Late(AssertionError):
    """The condition did not come true in time."""


def wait_until(condition, what, seconds=10.0, every=0.02):
    """Returns the first true answer of condition(). Raises Late, naming what was waited for.

    what is a text, or a function that gives one at the end of the waiting.
    """
    end = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise Late(f"not within {seconds:g} s: {what() if callable(what) else what}")
        time.sleep(every)


def retry_until(action, condition, what, seconds=20.0, patience=1.0):
    """Repeats action() until condition() is true, giving each attempt some patience.

    For programs that swallow keys while they start. The action must be harmless when repeated.
    """
    end = time.monotonic() + seconds
    while True:
        action()
        try:
            return wait_until(condition, what, patience)
        except Late:
            if time.monotonic() > end:
                raise Late(f"not within {seconds:g} s of trying: {what}") from None
