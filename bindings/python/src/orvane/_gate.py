"""One call at a time: the library has one session a process and no locks of its own."""

from __future__ import annotations

import os
import threading
from contextlib import contextmanager
from typing import Iterator

from .errors import NoSessionError


class Gate:
    """Threads wait for each other; a thread that is inside already is refused, since it would wait for itself."""

    def __init__(self) -> None:
        self._lock = threading.RLock()
        self._inside = False
        self._torn = False

    @contextmanager
    def entered(self) -> Iterator[None]:
        with self._lock:
            if self._torn:
                raise NoSessionError("this process was forked from inside a call: use the library in a new process")
            if self._inside:  # a signal handler, or a handler of the host that the operator's window serves
                raise NoSessionError("a call from inside another call of the same thread")
            self._inside = True
            try:
                yield
            finally:
                self._inside = False

    # A fork while another thread is in the library would leave the child half of a call for ever.

    def before_fork(self) -> None:
        self._lock.acquire()

    def after_fork_in_parent(self) -> None:
        self._lock.release()

    def after_fork_in_child(self) -> None:
        self._torn = self._inside  # by the thread that forked: nobody else was let in
        self._lock = threading.RLock()


gate = Gate()

if hasattr(os, "register_at_fork"):
    os.register_at_fork(
        before=gate.before_fork,
        after_in_parent=gate.after_fork_in_parent,
        after_in_child=gate.after_fork_in_child,
    )
