"""Something that goes on, on a thread of its own, while something else is measured."""
import threading


class Background:
    """Use as a context manager: step() is called again and again within the block."""

    def __init__(self):
        self.is_ending = False
        self.thread = threading.Thread(target=self.run)

    def __enter__(self):
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.is_ending = True
        self.thread.join()
        self.close()

    def run(self):
        while not self.is_ending:
            self.step()

    def step(self):
        raise NotImplementedError

    def close(self):
        """Behind the last step."""
