"""Drives crenara-desk through a day's work; started by the script session.

Mouse and keys go through the display, as those of a user; the desk tells where its parts are by the
interface for assistive technology.
"""

import csv
import os
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = 60  # seconds for anything to appear
MAIN = " - Crenara desk"  # in the title of the window of a document
MARGIN = 4  # of the photograph in its view, in pixels


def run(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def bus_address():
    """The bus for assistive technology, which the question starts; empty until it is there."""
    answer = subprocess.run(["dbus-send", "--session", "--print-reply=literal",
                             "--dest=org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus.GetAddress"],
                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                            check=False)
    return answer.stdout.strip()


def wait_for(what, test):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        try:
            found = test()
        except GLib.Error:  # a part that went while it was looked at
            found = None
        if found:
            return found
        time.sleep(0.1)
    raise TimeoutError("session: no " + what)


def is_shown(part):
    states = part.get_state_set()
    return states.contains(Atspi.StateType.SHOWING) and states.contains(Atspi.StateType.VISIBLE)


def parts(part, depth=12):
    """All parts below one, those that are not shown left out."""
    for i in range(part.get_child_count()):
        child = part.get_child_at_index(i)
        if child is None:
            continue
        if child.get_role_name() == "popup menu" or is_shown(child):
            yield child
            if depth > 0:
                yield from parts(child, depth - 1)


def place(part):
    """Left, top, width and height on the display."""
    box = part.get_extents(Atspi.CoordType.SCREEN)
    return box.x, box.y, box.width, box.height


class Hand:
    """Mouse and keys."""

    def key(self, *keys):
        for key in keys:
            run("xdotool", "key", "--clearmodifiers", key)
            time.sleep(0.15)

    def write(self, text):
        run("xdotool", "type", "--delay", "6", text)
        time.sleep(0.3)

    def move(self, x, y):
        run("xdotool", "mousemove", "--sync", str(round(x)), str(round(y)))

    def click(self, x, y):
        self.move(x, y)
        time.sleep(0.1)
        run("xdotool", "click", "1")
        time.sleep(0.2)

    def click_on(self, part):
        x, y, width, height = place(part)
        self.click(x + width / 2, y + height / 2)

    def wheel(self, part, down):
        """Turns the wheel as far as the part goes."""
        x, y, width, height = place(part)
        self.move(x + width / 2, y + height / 2)
        run("xdotool", "click", "--repeat", "20", "--delay", "10", "5" if down else "4")
        time.sleep(0.3)

    def drag(self, start, end):
        self.move(*start)
        run("xdotool", "mousedown", "1")
        for step in range(1, 6):
            self.move(*(a + (b - a) * step / 5 for a, b in zip(start, end)))
            time.sleep(0.05)
        run("xdotool", "mouseup", "1")
        time.sleep(0.3)


class Desk:
    """The running program as a user sees it."""

    def __init__(self, binaries, pictures, *files):
        self.hand = Hand()
        self.pictures = pictures
        # Asking starts the registry, where a desk that comes first would not be heard of.
        Atspi.get_desktop(0).get_child_count()
        self.process = subprocess.Popen([binaries + "/crenara-desk", *files])
        self.program = wait_for("desk", self._find)
        self.bring("Crenara desk")
        run("xdotool", "getactivewindow", "windowmove", "4", "24", "windowsize", "1180", "760")

    def _find(self):
        desktop = Atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(i)
            if child and child.get_process_id() == self.process.pid:
                return child
        return None

    def windows(self):
        for i in range(self.program.get_child_count()):
            window = self.program.get_child_at_index(i)
            if window and is_shown(window):
                yield window

    def window(self, title):
        """The window with this text in its title."""

        def found():
            return next((w for w in self.windows() if title in w.get_name()), None)

        return wait_for("window " + title, found)

    def part(self, role, name, title):
        """The part of a window with this role and name."""

        def found():
            for window in self.windows():
                if title in window.get_name():
                    for part in parts(window):
                        if part.get_role_name() == role and name in part.get_name():
                            return part
            return None

        return wait_for(role + " " + name, found)

    def bring(self, title):
        """Brings a window to the front, as a click on its entry in a task bar does."""
        self.window(title)
        for window in run("xdotool", "search", "--onlyvisible", "--name", title).split():
            run("xdotool", "windowactivate", "--sync", window)
            break
        time.sleep(0.3)

    def menu(self, name, entry, title=MAIN):
        self.bring(title)
        bar = self.part("menu item", name, title)
        self.hand.click_on(bar)

        def found():
            for part in parts(bar):
                if part.get_role_name() == "menu item" and part.get_name() == entry:
                    return part if place(part)[2] > 0 and is_shown(part) else None
            return None

        self.hand.click_on(wait_for("entry " + entry, found))

    def choose_files(self, title, text):
        """Types names into the dialog of files."""
        self.bring(title)
        self.hand.write(text)
        self.hand.key("Return")

    def confirm(self, text, save_as=None):
        """Waits for the box with this text, and closes it."""

        def found():
            for window in self.windows():
                if any(text in part.get_name() for part in parts(window)):
                    return window
            return None

        box = wait_for("box " + text, found)
        if save_as:
            self.picture(save_as)
        button = next(p for p in parts(box) if p.get_role_name() == "push button")
        self.hand.click_on(button)
        wait_for("end of the box " + text, lambda: not found())

    def picture(self, name):
        time.sleep(0.8)
        file = "%s/%s.png" % (self.pictures, name)
        run("import", "-window", "root", file)
        run("pngquant", "--force", "--strip", "--speed", "1", "--nofs",
            "--output", file, "56", file)

    def ended(self):
        return self.process.wait(PATIENCE)


class Photograph:
    """Where the pixels of a slice are on the display, when the whole of it is shown."""

    def __init__(self, desk, file):
        left, top, width, height = place(desk.part("layered pane", "", MAIN))
        columns, rows = map(int, run("identify", "-format", "%w %h", file).split())
        self.scale = min((width - 2 * MARGIN) / columns, (height - 2 * MARGIN) / rows)
        self.left = left + (width - self.scale * columns) / 2
        self.top = top + (height - self.scale * rows) / 2

    def place(self, x, y):
        return self.left + (x + 0.5) * self.scale, self.top + (y + 0.5) * self.scale


def read_landmarks(stack, model, name):
    """The points of a model on a slice, from a stack file."""
    points = []
    wanted = False
    with open(stack, encoding="utf-8") as lines:
        for line in lines:
            if line.startswith(("MODELITEM ", "MODEL ")):
                wanted = line.startswith('MODELITEM "%s" "%s"' % (model, name))
            elif wanted and line.strip()[:1].isdigit():
                pairs = line.strip().rstrip(";").split()
                points += [tuple(map(int, pair.split(","))) for pair in pairs]
    return points


class Session:
    def __init__(self, binaries, work, background, pictures):
        self.binaries = binaries
        self.work = work
        self.background = background
        self.pictures = pictures
        self.folder = work + "/photographs"
        self.files = sorted(f for f in os.listdir(self.folder) if f.endswith(".tif"))
        self.names = [f[:-4] for f in self.files]
        self.stack = work + "/results/leaves.sdf"
        os.makedirs(work + "/results")
        self.desk = Desk(binaries, pictures)
        self.hand = self.desk.hand
        self.step = 0

    def picture(self, name):
        self.step += 1
        self.desk.picture("%02d-%s" % (self.step, name))

    def open_photographs(self):
        self.picture("start")
        self.hand.key("ctrl+o")
        self.desk.choose_files("Open", " ".join('"%s/%s"' % (self.folder, f) for f in self.files))
        self.desk.part("list item", self.names[0], MAIN)
        time.sleep(2)
        self.close_questions()
        self.picture("photographs")

    def close_questions(self):
        """Photographs without a pixel size are measured in pixels."""
        for title in ("Open", "Pixel size"):
            if any(title in window.get_name() for window in self.desk.windows()):
                self.picture("question")
                self.desk.bring(title)
                self.hand.key("Escape")
                time.sleep(0.5)

    def save_as(self):
        self.desk.bring(MAIN)
        self.hand.key("ctrl+s")
        self.desk.choose_files("Save As", self.stack)
        wait_for("stack file", lambda: os.path.exists(self.stack))

    def start_plugin(self):
        self.desk.menu("Plugins", "Crenara 1.16")
        self.desk.window("Crenara :")
        self.desk.bring("Crenara :")
        run("xdotool", "getactivewindow", "windowmove", "300", "24")
        self.click_in_plugin("push button", "New Project")
        self.desk.window("New project")
        form = [p for p in parts(self.desk.window("New project")) if p.get_role_name() == "text"]
        self.hand.click_on(form[1])
        self.hand.write("Sorbus sp.")
        self.hand.click_on(self.desk.part("push button", "Save as", "New project"))
        time.sleep(1)
        self.hand.write(self.work + "/results")
        self.hand.key("Return")
        time.sleep(0.5)
        self.picture("project")
        self.hand.click_on(self.desk.part("push button", "Done", "New project"))

    def click_in_plugin(self, role, name):
        self.desk.bring("Crenara :")
        self.hand.click_on(self.desk.part(role, name, "Crenara :"))
        time.sleep(0.3)

    def stage(self, page, text, before=None):
        """Runs a stage from its page; `text` stands in the box that tells its end."""
        self.desk.bring("Crenara :")
        self.hand.wheel(self.desk.part("list", "", "Crenara :"), page in ("Analysis", "Averaging"))
        self.click_in_plugin("list item", page)
        if before:
            before()
        self.click_in_plugin("push button", "Process")
        self.step += 1
        self.desk.confirm(text, "%02d-%s" % (self.step, page.split()[-1].lower()))

    def extract_contours(self):
        self.click_in_plugin("list item", "Extract Contour")
        self.click_in_plugin("radio button", {"light": "Ligth", "dark": "Dark"}[self.background])
        self.click_in_plugin("push button", "Process")
        bar = self.desk.part("progress bar", "", "Crenara :")
        wait_for("end of the contours", lambda: Atspi.Value.get_current_value(bar) >= 100)
        self.picture("contour")

    def draw_junctions(self):
        self.desk.bring(MAIN)
        self.hand.key("ctrl+j")
        with open(self.folder + "/junctions.tsv", encoding="utf-8") as table:
            rows = {row["Slice_Name"]: row for row in csv.DictReader(table, delimiter="\t")}
        self.choose_slice(0)
        for index, name in enumerate(self.names):
            if index > 0:
                self.hand.key("Page_Down")
                time.sleep(0.5)
            view = Photograph(self.desk, "%s/%s" % (self.folder, self.files[index]))
            for end in "12":
                self.hand.click(*view.place(int(rows[name]["X" + end]), int(rows[name]["Y" + end])))
        self.picture("junctions")
        self.hand.key("ctrl+1")

    def choose_slice(self, index):
        self.desk.bring(MAIN)
        item = self.desk.part("list item", self.names[index], MAIN)
        self.hand.click_on(item)
        time.sleep(0.5)

    def correct(self):
        """Moves three sinuses of the first leaf along the outline, and takes one back."""
        self.choose_slice(0)
        view = Photograph(self.desk, "%s/%s" % (self.folder, self.files[0]))
        outline = read_landmarks(self.stack, "Contour", self.names[0])
        sinuses = read_landmarks(self.stack, "Primary Sinus", self.names[0])
        if len(sinuses) < 3:
            raise ValueError("session: the first leaf has too few sinuses to correct")
        corrected = [0, len(sinuses) // 2, len(sinuses) - 1]
        for x, y in (sinuses[i] for i in corrected):
            nearest = min(range(len(outline)),
                          key=lambda i: (outline[i][0] - x) ** 2 + (outline[i][1] - y) ** 2)
            target = outline[(nearest + 24) % len(outline)]
            self.hand.drag(view.place(x, y), view.place(*target))
        self.picture("corrected")
        self.hand.key("ctrl+z")
        self.picture("undone")
        self.hand.key("ctrl+s")
        time.sleep(1)
        saved = read_landmarks(self.stack, "Primary Sinus", self.names[0])
        moved = [i for i, pair in enumerate(zip(sinuses, saved)) if pair[0] != pair[1]]
        if len(saved) != len(sinuses) or moved != corrected[:2]:
            raise RuntimeError("session: moved sinuses %s in place of %s" % (moved, corrected[:2]))

    def look_at_results(self):
        self.desk.menu("View", "Results")
        self.desk.bring("Results")
        run("xdotool", "getactivewindow", "windowmove", "200", "120")
        self.picture("table")
        self.hand.click_on(self.desk.part("page tab", "Plot", "Results"))
        self.picture("plot")

    def average(self):
        def choose():
            self.click_in_plugin("check box", "based on bins")
            boxes = [p for p in parts(self.desk.window("Crenara :"))
                     if p.get_role_name() == "spin button"]
            number = min((b for b in boxes if b.get_name().startswith("Averages number")),
                         key=place, default=boxes[3])
            self.hand.click_on(number)
            self.hand.key("ctrl+a")
            self.hand.write("2")
            self.hand.key("Tab")

        self.stage("Averaging", "Averaging is complete", choose)

    def look_at_shapes(self):
        self.desk.menu("File", "Open shapes...", "Results")
        self.desk.choose_files("Open shapes", self.work + "/results/photographs-trajectory.sdf")
        wait_for("shapes", lambda: self.desk.part("list", "Names of the shapes", "Results"))
        self.picture("shapes")

    def close(self, desk):
        desk.bring(MAIN)
        desk.hand.key("ctrl+q")
        if desk.ended() != 0:
            raise RuntimeError("session: the desk did not end well")

    def save_and_close(self):
        self.desk.bring(MAIN)
        self.hand.key("ctrl+s")
        time.sleep(1)
        self.close(self.desk)

    def reopen_and_export(self):
        self.desk = Desk(self.binaries, self.pictures, self.stack)
        self.hand = self.desk.hand
        self.desk.part("list item", self.names[0], MAIN)
        self.picture("reopened")
        self.desk.menu("View", "Results")
        for tab, file in (("Leaves", "leaves"), ("Teeth", "teeth")):
            self.hand.click_on(self.desk.part("page tab", tab, "Results"))
            self.hand.key("ctrl+e")
            path = "%s/%s.data" % (self.work, file)
            self.desk.choose_files("Export table", path)
            wait_for("table " + path, lambda: os.path.exists(path))
        self.close(self.desk)

    def compare(self):
        """The command line on the saved stack against what the stage and the window wrote."""
        subprocess.run([self.binaries + "/crenara", "measure", self.stack, "--quiet", "--out",
                        self.work + "/line", "--prefix", "line"], check=True)
        for table, exported in (("LeafMeasures", "leaves"), ("PeakMeasures", "teeth")):
            with open("%s/line/line_%s.data" % (self.work, table), "rb") as file:
                expected = file.read()
            written = [f for f in os.listdir(self.work + "/results") if f.endswith(table + ".data")]
            for path in [self.work + "/results/" + f for f in written] + [
                    "%s/%s.data" % (self.work, exported)]:
                with open(path, "rb") as file:
                    if file.read() != expected:
                        raise RuntimeError("session: %s is not what the command line writes" % path)
            if len(written) != 1:
                raise RuntimeError("session: no table " + table)
            print("%s: %d rows, the same in the stage, in the window and on the command line"
                  % (table, expected.count(b"\n") - 1))

    def day(self):
        self.open_photographs()
        self.start_plugin()
        self.extract_contours()
        self.draw_junctions()
        self.stage("Extract Sinus", "sinuses")
        self.stage("Extract Tips", "Peaks extraction is complete")
        self.save_as()
        self.correct()
        self.stage("Analysis", "Analysis is complete")
        self.look_at_results()
        self.average()
        self.look_at_shapes()
        self.save_and_close()
        self.reopen_and_export()
        self.compare()


def main():
    manager = subprocess.Popen(["openbox"], stderr=subprocess.DEVNULL)
    os.environ["AT_SPI_BUS_ADDRESS"] = wait_for("bus", bus_address)
    Atspi.get_desktop(0).set_cache_mask(Atspi.Cache.NONE)  # parts come and go
    wait_for("window manager", lambda: "window id" in run("xprop", "-root",
                                                         "_NET_SUPPORTING_WM_CHECK"))
    time.sleep(1)
    session = None
    try:
        session = Session(*sys.argv[1:])
        session.day()
    except Exception:
        if session:
            session.desk.picture("failed")
        raise
    finally:
        if session:
            session.desk.process.kill()
        manager.terminate()


main()
