"""Threads wait for each other, processes work side by side, and nothing is kept."""

from __future__ import annotations

import hashlib
import multiprocessing
import os
import signal
import threading
from concurrent.futures import ThreadPoolExecutor

import numpy as np
import pytest

import orvane
from orvane._gate import gate

SIZES = [(200, 240), (240, 320), (300, 300), (160, 400)]


def digest(array, size):
    return hashlib.sha256(orvane.portrait(array, size=size).tobytes()).hexdigest()


def digest_in_child(arguments):
    return digest(*arguments)


@pytest.fixture(scope="module")
def array(photo):
    return np.asarray(photo.crop((120, 0, 376, 256)))


@pytest.fixture(scope="module")
def wanted(array):
    return [digest(array, size) for size in SIZES]


def test_threads_with_other_settings_do_not_mix(array, wanted):
    with ThreadPoolExecutor(8) as pool:
        assert list(pool.map(lambda i: digest(array, SIZES[i % 4]), range(24))) == wanted * 6


@pytest.mark.parametrize("method", ["fork", "spawn", "forkserver"])
def test_processes_open_sessions_of_their_own(array, wanted, method):
    context = multiprocessing.get_context(method)
    with context.Pool(3) as pool:
        assert pool.map(digest_in_child, [(array, size) for size in SIZES] * 2) == wanted * 2
    assert digest(array, SIZES[0]) == wanted[0]


def test_an_exception_comes_back_from_a_process():
    with multiprocessing.get_context("fork").Pool(1) as pool:
        with pytest.raises(orvane.NoFaceError):
            pool.map(digest_in_child, [(np.zeros((200, 200), np.uint8), (100, 100))])


def test_a_fork_waits_for_the_call_of_another_thread(array, wanted):
    stop = threading.Event()
    results = []

    def work():
        while not stop.is_set():
            results.append(digest(array, SIZES[0]))

    worker = threading.Thread(target=work)
    worker.start()
    try:
        for _ in range(6):
            child = os.fork()
            if child == 0:
                signal.alarm(60)
                os._exit(0 if digest(array, SIZES[1]) == wanted[1] else 1)
            assert os.waitpid(child, 0)[1] == 0
    finally:
        stop.set()
        worker.join()
    assert set(results) == {wanted[0]}


def test_a_call_inside_a_call_is_refused(array, wanted):
    with gate.entered():
        with pytest.raises(orvane.NoSessionError, match="inside another call"):
            digest(array, SIZES[0])
    assert digest(array, SIZES[0]) == wanted[0]


def test_a_child_forked_inside_a_call_is_told_so(array):
    with gate.entered():
        child = os.fork()
        if child == 0:
            try:
                digest(array, SIZES[0])
            except orvane.NoSessionError as error:
                os._exit(0 if "forked" in str(error) else 1)
            os._exit(2)
    assert os.waitpid(child, 0)[1] == 0


def resident_bytes():
    with open("/proc/self/statm") as numbers:
        return int(numbers.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")


def test_nothing_leaks(photo):
    small = photo.crop((120, 0, 376, 256))
    kinds = [small, np.asarray(small), orvane.Picture(256, 256, small.tobytes())]
    faceless = np.zeros((256, 256, 3), np.uint8)

    def rounds(count):
        for _ in range(count):
            for kind in kinds:
                orvane.portrait(kind)
            with pytest.raises(orvane.NoFaceError):
                orvane.portrait(faceless)

    rounds(8)
    before = resident_bytes()
    rounds(40)
    # One lost portrait a round would be 50 MB, one lost photo a round 8 MB.
    assert resident_bytes() - before < 3_000_000
