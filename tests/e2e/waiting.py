"""Waiting for what another process does: a condition and a deadline, never a fixed time."""

import time

DEADLINE = 30.0  # seconds; nothing takes this long but a machine that has much else to do


def wait_until(condition, what, deadline=DEADLINE):
    """Returns the first true answer of `condition`. `what` says in the error what was waited for."""
    end = time.monotonic() + deadline
    pause = 0.002
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise TimeoutError(f"waited {deadline:g} s in vain: {what() if callable(what) else what}")
        time.sleep(pause)
        pause = min(pause * 1.5, 0.05)
