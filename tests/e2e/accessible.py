"""What a screen reader meets: the objects on the accessibility bus, as plain Python."""

import contextlib

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402  (the version comes first)
from waiting import wait_until  # noqa: E402

_answer_patience = 30_000  # milliseconds: a program that waits for a lister answers late
Atspi.set_timeout(_answer_patience, _answer_patience)


class Accessible:
    """One object: a window, a button, a cell. Everything is asked anew each time."""

    def __init__(self, remote):
        self.remote = remote

    name = property(lambda self: self.remote.get_name())
    description = property(lambda self: self.remote.get_description())
    role = property(lambda self: self.remote.get_role_name())
    pid = property(lambda self: self.remote.get_process_id())

    def __repr__(self):
        return f"<{self.role} {self.name!r}>"

    def is_(self, state):
        """Whether a state holds, by its name in lower case, for example "showing" or "checked"."""
        return self.remote.get_state_set().contains(getattr(Atspi.StateType, state.upper()))

    @property
    def children(self):
        found = (self.remote.get_child_at_index(index) for index in range(self.remote.get_child_count()))
        return [Accessible(child) for child in found if child is not None]

    def descendants(self, into=lambda accessible: True):
        """All objects below this one, parents first. `into` says below which to look."""
        for child in self.children:
            yield child
            if into(child):
                yield from child.descendants(into)

    def find(self, role=None, name=None):
        """The objects below this one with a role and a name. Does not look into lists, which may be long."""
        lists = ("tree table", "tree", "table", "list")
        return [
            child
            for child in self.descendants(lambda child: child.role not in lists)
            if (role is None or child.role == role) and (name is None or child.name == name)
        ]

    def one(self, role=None, name=None):
        found = self.find(role, name)
        if len(found) != 1:
            raise LookupError(f"{len(found)} objects {role} {name!r} in {self!r}")
        return found[0]

    @property
    def text(self):
        return Atspi.Text.get_text(self.remote, 0, -1)

    @text.setter
    def text(self, text):
        Atspi.EditableText.set_text_contents(self.remote, text)

    @property
    def actions(self):
        count = Atspi.Action.get_n_actions(self.remote)
        return [Atspi.Action.get_action_name(self.remote, index) for index in range(count)]

    def do(self, action):
        """Does one of the object's actions, by name."""
        Atspi.Action.do_action(self.remote, self.actions.index(action))

    def press(self):
        self.do("Press")

    def toggle(self):
        self.do("Toggle")

    def focus(self):
        Atspi.Component.grab_focus(self.remote)

    @property
    def extents(self):
        """Left, top, width and height on the screen, in pixels."""
        box = Atspi.Component.get_extents(self.remote, Atspi.CoordType.SCREEN)
        return box.x, box.y, box.width, box.height


def source_of(event):
    """The role and the name of the object that an event is about."""
    source = Accessible(event.source)
    return source.role, source.name


class Listener:
    """Hears events of the given kinds, for example "text-caret-moved", as long as it lives. It takes a program a
    while to know that somebody listens."""

    def __init__(self, *kinds, told=source_of):
        """`told` makes of an event what is kept of it in `heard`."""
        self.heard = []

        def hear(event):
            with contextlib.suppress(GLib.Error):  # an object that is gone again
                self.heard.append(told(event))

        self._listener = Atspi.EventListener.new(hear)
        for kind in kinds:
            self._listener.register(f"object:{kind}")

    def has_heard(self, is_it):
        """Whether `is_it` is true of something that was told."""
        while GLib.MainContext.default().iteration(False):
            pass
        return any(map(is_it, self.heard))

    def wait_for(self, is_it, what):
        wait_until(lambda: self.has_heard(is_it), lambda: f"{what}; heard {self.heard}")


def applications():
    """The programs on the bus. One that is just starting or ending may be missing."""
    desktop = Atspi.get_desktop(0)
    found = []
    for index in range(desktop.get_child_count()):
        try:
            child = desktop.get_child_at_index(index)
        except GLib.Error:
            continue
        if child is not None:
            found.append(Accessible(child))
    return found
