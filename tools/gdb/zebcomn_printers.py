"""What gdb shows of libzebcomn: handles, the shared/exclusive lock and the lists.

gdb loads this file by itself with the library when it is installed; docs/debugging.md has the other
ways and a session. `print/r` shows a value without it.
"""
import gdb
import gdb.printing

MOST_ELEMENTS = 200

FILE, EVENT, THREAD, MUTEX = range(4)

TRANSITIONS = {
    1: "created",
    2: "taken exclusively",
    3: "turned from exclusive to shared",
    4: "released",
    5: "handed over to a queued exclusive request",
    6: "taken exclusively by a notify request",
}


def pointer_size():
    return gdb.lookup_type("void").pointer().sizeof


def all_ones():
    return (1 << (8 * pointer_size())) - 1


def read_number(address, size):
    """The unsigned number of so many bytes at an address."""
    big = "big-endian" in gdb.execute("show endian", to_string=True)
    memory = gdb.selected_inferior().read_memory(address, size)
    return int.from_bytes(bytes(memory), "big" if big else "little")


def read_pointer(address):
    return read_number(address, pointer_size())


def counted(number, noun):
    return f"{number} {noun}" if number == 1 else f"{number} {noun}s"


def thread_with_lwp(lwp):
    """How gdb calls the thread with this kernel identity."""
    for thread in gdb.selected_inferior().threads():
        if thread.ptid[1] == lwp:
            return f"thread {thread.num} (LWP {lwp})"
    return f"LWP {lwp}"


def thread_with_pthread(address):
    """How gdb calls the thread whose pthread_t stands at this address."""
    size = gdb.lookup_type("unsigned long").sizeof
    wanted = bytes(gdb.selected_inferior().read_memory(address, size))
    for thread in gdb.selected_inferior().threads():
        try:
            if thread.handle() == wanted:
                return f"thread {thread.num} (LWP {thread.ptid[1]})"
        except gdb.error:
            break
    return "a thread that is gone"


def describe_file(record):
    # The descriptor, two flags, and the path.
    address = int(record["pObject"])
    descriptor = read_number(address, 4)
    path = gdb.Value(address + 12).cast(gdb.lookup_type("char").pointer()).string(errors="replace")
    return f'file "{path}", descriptor {descriptor}'


def describe_event(record):
    return "event, signalled" if int(record["bSignalled"]) else "event, not signalled"


def describe_thread(record):
    if int(record["bSignalled"]):
        return "thread handle, its routine has ended"
    return f"handle of {thread_with_pthread(int(record['pObject']))}, running"


def describe_mutex(record):
    if int(record["bSignalled"]):
        return "mutex, free"
    ownership = record["pObject"].cast(gdb.lookup_type("pthread_mutex_t").pointer())
    lwp = int(ownership.dereference()["__data"]["__owner"])
    return f"mutex, owned by {thread_with_lwp(lwp)}" if lwp else "mutex, about to be taken or free"


DESCRIPTIONS = {FILE: describe_file, EVENT: describe_event, THREAD: describe_thread,
                MUTEX: describe_mutex}


def describe_record(record):
    """What a handle record says; None when it is none."""
    describe = DESCRIPTIONS.get(int(record["nType"]))
    references = int(record["nRefCount"])
    if describe is None or references > 1:
        return None
    return describe(record) + ("" if references == 1 else ", closed")


class RecordPrinter:
    """A handle record."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return describe_record(self.value) or "no handle record"


class HandlePrinter:
    """A HANDLE, which the debugger knows as void* only."""

    def __init__(self, value):
        self.address = int(value) & all_ones()

    def to_string(self):
        if self.address in (0, all_ones()):
            return f"{self.address:#x} no handle"
        try:
            kind = gdb.lookup_type("_tivHandleObject_t")
            record = gdb.Value(self.address).cast(kind.pointer()).dereference()
            text = describe_record(record)
        except (gdb.error, gdb.MemoryError):
            text = None
        return f"{self.address:#x} {text or 'no handle record'}"


def chain(first, is_end, next_of):
    """Yields the addresses of a list's elements, and stops after MOST_ELEMENTS of them."""
    element = first
    for _ in range(MOST_ELEMENTS):
        if is_end(element):
            return
        yield element
        element = next_of(element)


def single_elements(head):
    """The elements of a list whose head stands at an address."""
    return chain(read_pointer(head), lambda element: element == 0, read_pointer)


def double_elements(head_sentinel):
    """The elements behind a head sentinel; the tail sentinel's next points to itself."""
    return chain(read_pointer(head_sentinel), lambda element: read_pointer(element) == element,
                 read_pointer)


def counted_elements(record):
    """The elements of a counted list: its record is the tail, the head and the count; an element
    begins with its previous and its next."""
    size = pointer_size()
    return chain(read_pointer(record + size), lambda element: element == 0,
                 lambda element: read_pointer(element + size))


class ListPrinter:
    """A list as an array of the addresses of its elements."""

    def __init__(self, value, elements, link_type, lock=None):
        self.link = gdb.lookup_type(link_type).pointer()
        self.lock = lock
        self.broken = ""
        self.found = []
        try:
            for element in elements(int(value.address)):
                self.found.append(element)
        except gdb.MemoryError:
            self.broken = ", then a broken link"

    def to_string(self):
        more = " or more" if len(self.found) == MOST_ELEMENTS else ""
        text = f"list of {counted(len(self.found), 'element')}{more}{self.broken}"
        if self.lock is None:
            return text
        return f"{text}, {describe_holder(self.lock)}"

    def children(self):
        for index, element in enumerate(self.found):
            yield f"[{index}]", gdb.Value(element).cast(self.link)

    def display_hint(self):
        return "array"


def describe_waiters(noun, head):
    """A queue of requests: each is a link and, behind it, the identity of the thread that waits."""
    threads = [f"{read_pointer(waiter + pointer_size()):#x}" for waiter in single_elements(head)]
    if not threads:
        return f"no {noun} waiters"
    return f"{counted(len(threads), noun + ' waiter')} {{{', '.join(threads)}}}"


def describe_holder(pointer):
    """Who holds the lock that a pointer leads to."""
    if int(pointer) == 0:
        return "without a lock"
    lock = pointer.dereference()
    count = int(lock["count"])
    owner = int(lock["owner"])
    if owner != all_ones():
        return f"lock held exclusively by {owner:#x}, {counted(count, 'grant')}"
    if count:
        return f"lock held shared, {counted(count, 'grant')}"
    return "lock free"


def describe_lock(lock):
    """Who holds a lock, who waits for it, and what happened to it last."""
    parts = [
        describe_holder(lock.address),
        describe_waiters("exclusive", int(lock["exclusive_waiters"].address)),
        describe_waiters("shared", int(lock["shared_waiters"].address)),
    ]
    callbacks = len(list(single_elements(int(lock["notify_list"].address))))
    if callbacks:
        parts.append(counted(callbacks, "callback"))
    if int(lock["spin_word"]):
        parts.append("spin word taken")
    state = int(lock["state"])
    return ", ".join(parts) + f"; last {TRANSITIONS.get(state, f'state {state}')}"


class LockPrinter:
    """A shared/exclusive lock."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return describe_lock(self.value)


def sll_printer(value):
    return ListPrinter(value, single_elements, "tiLL_element_t", value["lock"])


def sll2_printer(value):
    return ListPrinter(value, double_elements, "tiLL2_element_t", value["lock"])


def head_printer(value):
    return ListPrinter(value, single_elements, "tiLL_element_t")


BY_STRUCT = {
    "_tivHandleObject_t": RecordPrinter,
    "tiSO_SELockRecord": LockPrinter,
    "tiSLL": sll_printer,
    "tiSLL2": sll2_printer,
}
BY_TYPEDEF = {"HANDLE": HandlePrinter, "tiLL_head_t": head_printer}


def find_printer(value):
    """The printer of a value; gdb asks with the type as it was declared."""
    kind = value.type.unqualified()
    while kind.code == gdb.TYPE_CODE_TYPEDEF:
        if kind.name in BY_TYPEDEF:
            return BY_TYPEDEF[kind.name](value)
        kind = kind.target().unqualified()
    printer = BY_STRUCT.get(kind.tag) if kind.code == gdb.TYPE_CODE_STRUCT else None
    # Without an address there is nothing to follow the links from.
    if printer is None or value.address is None:
        return None
    return printer(value)


find_printer.__name__ = "zebcomn"


class ElementsCommand(gdb.Command):
    """Print the elements of a list of libzebcomn.

usage: zebcomn-elements LIST [TYPE]

LIST is an expression: a tiLL_head_t, tiSLL_t, tiSLL2_t, a pointer to one, or the handle of a
counted list. With TYPE, each element is printed as one of that type, else its address."""

    WALKS = {"tiSLL": single_elements, "tiLL_element": single_elements, "tiSLL2": double_elements}

    def __init__(self):
        super().__init__("zebcomn-elements", gdb.COMMAND_DATA, gdb.COMPLETE_EXPRESSION)

    def invoke(self, argument, from_tty):
        words = gdb.string_to_argv(argument)
        if len(words) not in (1, 2):
            raise gdb.GdbError("usage: zebcomn-elements LIST [TYPE]")
        value = gdb.parse_and_eval(words[0])
        kind = value.type.strip_typedefs()
        if kind.code == gdb.TYPE_CODE_PTR:
            target = kind.target().strip_typedefs()
            walk, address = self.WALKS.get(target.tag, counted_elements), int(value)
        else:
            walk, address = self.WALKS.get(kind.tag), value.address and int(value.address)
        if not walk or not address:
            raise gdb.GdbError(f"{words[0]} is no list")
        element_type = gdb.lookup_type(words[1]) if len(words) == 2 else None
        for index, element in enumerate(walk(address)):
            text = f"{element:#x}"
            if element_type is not None:
                text = gdb.Value(element).cast(element_type.pointer()).dereference().format_string()
            print(f"[{index}] = {text}")


gdb.printing.register_pretty_printer(gdb.current_objfile(), find_printer, replace=True)
ElementsCommand()
