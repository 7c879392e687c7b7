"""Objects a hostile script hands to the module: numbers whose conversion
runs code, sequences that fail or change while they are read, self-holding
containers. Reproducers saved by the fuzzer import this module."""

import sys


class Value(object):
    """A number whose conversion first runs `action` (failures of the
    action are swallowed: the action may find its containers gone)."""

    def __init__(self, number, action=None):
        self.number, self.action = number, action

    def _run(self):
        if self.action is not None:
            try:
                self.action()
            except Exception:
                pass

    def __index__(self):
        self._run()
        return int(self.number)

    def __int__(self):
        self._run()
        return int(self.number)

    def __float__(self):
        self._run()
        return float(self.number)


class Raising(object):
    """A number whose every conversion raises."""

    def __index__(self):
        raise RuntimeError("index")

    def __int__(self):
        raise RuntimeError("int")

    def __float__(self):
        raise RuntimeError("float")


class EvilSequence(object):
    """A sequence whose __len__, __getitem__ or __iter__ raises or changes
    its length while it is read (`mode`: 'len', 'getitem', 'iter', 'grow',
    'shrink')."""

    def __init__(self, mode, items=(1, 2, 3)):
        self.mode, self.items = mode, list(items)

    def __len__(self):
        if self.mode == "len":
            raise RuntimeError("len")
        if self.mode == "grow":
            self.items.append(0)
        return len(self.items)

    def __getitem__(self, index):
        if self.mode == "getitem":
            raise IndexError(index)
        if self.mode == "shrink" and self.items:
            self.items.pop()
        return self.items[index]

    def __iter__(self):
        if self.mode == "iter":
            raise RuntimeError("iter")
        return iter(list(self.items))


class ShiftyList(list):
    """A list subclass whose Python-level methods lie about its contents."""

    def __len__(self):
        return 10 ** 6

    def __getitem__(self, index):
        raise IndexError(index)


class ShiftyDict(dict):
    def __getitem__(self, key):
        raise KeyError(key)

    def keys(self):
        return ["x", None]


class OddKey(object):
    def __hash__(self):
        raise TypeError("unhashable at heart")

    def __eq__(self, other):
        raise RuntimeError("eq")


def deep(depth):
    """A list nested `depth` levels down."""
    value = []
    for _ in range(depth):
        value = [value]
    return value


def self_holding_list():
    value = [[0, 1]]
    value.append(value)
    return value


def self_holding_dict():
    value = {"EffVer": 1}
    value["self"] = value
    return value


def wipe(container):
    """Empties `container` and every container inside it."""
    seen = set()
    stack = [container]
    while stack:
        item = stack.pop()
        if id(item) in seen:
            continue
        seen.add(id(item))
        if isinstance(item, dict):
            stack.extend(item.values())
            item.clear()
        elif isinstance(item, list):
            stack.extend(item)
            del item[:]


POOL = []


def pooled(index):
    """An object kept from an earlier call, or None when there is none."""
    return POOL[index % len(POOL)] if POOL else None


def keep(value):
    POOL.append(value)
    if len(POOL) > 64:
        del POOL[0]
    return value


def run_threads(works, rounds=10):
    """Runs each of `works` `rounds` times on a thread of its own, all at
    once, and waits for all of them: a deadlock hangs here."""
    import threading

    def loop(work):
        for _ in range(rounds):
            try:
                work()
            except Exception:
                pass

    threads = [threading.Thread(target=loop, args=(work,)) for work in works]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
