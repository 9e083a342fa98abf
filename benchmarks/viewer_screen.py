# SPDX-License-Identifier: MIT
"""A virtual screen for measurements of whole programs, with functions that operate a viewer on it."""
import mmap
import os
import subprocess
import time

WIDTH, HEIGHT = 1600, 1000
PATIENCE = 40


class Screen:
    """A virtual screen with a window manager; its memory can be read."""

    def __init__(self, folder):
        read, write = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{WIDTH}x{HEIGHT}x24", "-fbdir",
             folder, "-nolisten", "tcp", "-noreset"], pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as number:
            self.display = ":" + number.readline().strip()
        self.environment = dict(os.environ, DISPLAY=self.display, HOME=folder,
                                QT_QPA_PLATFORM="xcb", GDK_BACKEND="x11")
        with open(os.path.join(folder, "Xvfb_screen0"), "rb") as file:
            self.memory = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)
        self.manager = self.start(["openbox", "--sm-disable"])
        wait_for("the window manager", self.managed)

    def managed(self):
        answer = subprocess.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], text=True,
                                env=self.environment, stdout=subprocess.PIPE)
        return "window id" in answer.stdout

    def start(self, command, **variables):
        return subprocess.Popen(command, env=dict(self.environment, **variables),
                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def xdotool(self, *arguments):
        return subprocess.run(["xdotool", *arguments], env=self.environment, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout.split()

    def screenshot(self, path):
        subprocess.run(["import", "-silent", "-window", "root", path], env=self.environment)

    def row(self, x, y, pixels):
        """Pixels of the screen from (x, y) to the right, 4 bytes each: blue, green, red, unused."""
        begin = len(self.memory) - WIDTH * HEIGHT * 4 + (y * WIDTH + x) * 4
        return self.memory[begin:begin + pixels * 4]

    def picture_row(self):
        """64 pixels at a position of the screen that is inside the image of every viewer."""
        return self.row(800, 400, 64)

    def count_frames(self, seconds):
        """Number of displayed frames: changes of a row of pixels in the middle of a moving image."""
        frames, last = 0, self.picture_row()
        limit = time.monotonic() + seconds
        while time.monotonic() < limit:
            now = self.picture_row()
            if now != last:
                frames, last = frames + 1, now
            time.sleep(0.003)
        return frames

    def window_of(self, process):
        """The largest visible window of a process."""
        found = []
        for window in self.xdotool("search", "--onlyvisible", "--all", "--pid", str(process.pid),
                                   "--name", "."):
            geometry = dict(line.split("=") for line in
                            self.xdotool("getwindowgeometry", "--shell", window))
            found.append((int(geometry.get("WIDTH", 0)), window))
        return max(found)[1] if found else None

    def place(self, window, width, height):
        self.xdotool("windowactivate", "--sync", window)
        self.xdotool("windowmove", window, "0", "0", "windowsize", "--sync", window, str(width),
                     str(height))

    def end(self):
        end(self.manager)
        end(self.server)


def end(process):
    process.terminate()
    try:
        process.wait(5)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def wait_for(what, condition):
    limit = time.monotonic() + PATIENCE
    while time.monotonic() < limit:
        result = condition()
        if result:
            return result
        time.sleep(0.1)
    raise RuntimeError("waited in vain for " + what)


def processor_time(pid, thread=None):
    """Processor seconds of a process and its reaped children, or of one of its threads."""
    path = f"/proc/{pid}/stat" if thread is None else f"/proc/{pid}/task/{thread}/stat"
    with open(path) as stat:
        fields = stat.read().rpartition(")")[2].split()
    count = 4 if thread is None else 2
    return sum(int(field) for field in fields[11:11 + count]) / os.sysconf("SC_CLK_TCK")


def play_orvalis(screen, process, camera, row):
    """Opens the camera in that row of the list, plays, and fits the image to the window."""
    window = wait_for("the window", lambda: screen.window_of(process))
    screen.place(window, WIDTH, HEIGHT - 24)

    def opened():
        screen.xdotool("mousemove", "150", "200", "click", "1", "key", "Home", *["key", "Down"] * row,
                       "key", "ctrl+o")
        time.sleep(1)
        return camera in " ".join(screen.xdotool("getwindowname", window))
    wait_for("the camera to open", opened)
    screen.xdotool("key", "F6")
    time.sleep(1)
    screen.xdotool("key", "ctrl+0")
