"""What the tests of this folder count, and how they end: as script/test reads it."""
import faulthandler
import signal

signal.signal(signal.SIGINT, signal.default_int_handler)  # what runs in the background is born deaf to it
faulthandler.dump_traceback_later(600, exit=True)  # a test that hangs tells where

answers = []  # what was checked, and whether it held


def check(what, is_so):
    answers.append((what, is_so))


def end():
    """Tells what did not hold; the exit status."""
    failures = [what for what, is_so in answers if not is_so]
    for what in failures:
        print("failed:", what)
    print("%d passed, %d failed" % (len(answers) - len(failures), len(failures)))
    return 1 if failures else 0
