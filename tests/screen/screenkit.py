"""Real-screen test kit: an Xvfb server of its own, cadhost in its window mode on it, key and mouse
events by xdotool, screenshots of single windows by ImageMagick's import, and the report of
window and control geometry that cadhost writes when CADHOST_SCREEN_REPORT names a file."""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import time

SKIP = 77


def skip(reason):
    print(f"SKIP: {reason}")
    sys.exit(SKIP)


def end(process):
    """Ends a process that still runs: politely first, by force after five seconds."""
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(5)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


class Xvfb:
    """An X server on a display number it picks itself (-displayfd), so that parallel runs never meet."""

    def __init__(self, size="1280x1024x24"):
        for tool in ("Xvfb", "xdotool", "import"):
            if not shutil.which(tool):
                skip(f"{tool} is not installed (scripts/deps.sh installs xvfb, xdotool and imagemagick)")
        read_end, write_end = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", size, "-nolisten", "tcp", "-noreset"],
            pass_fds=(write_end,), stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        os.close(write_end)
        number = b""
        deadline = time.time() + 10
        while time.time() < deadline and not number.endswith(b"\n"):
            chunk = os.read(read_end, 16)
            if not chunk:
                break
            number += chunk
        os.close(read_end)
        if not number.strip():
            error = self.process.stderr.read().decode(errors="replace") if self.process.poll() is not None else ""
            self.stop()
            skip(f"Xvfb could not start: {error.strip()[:300]}")
        self.display = ":" + number.decode().strip()

    def stop(self):
        end(self.process)


class Image:
    """A screenshot as rows of RGB triples, read from the binary PPM that import writes."""

    def __init__(self, data):
        fields = []
        pos = 0
        while len(fields) < 4:
            while data[pos:pos + 1].isspace():
                pos += 1
            if data[pos:pos + 1] == b"#":
                pos = data.index(b"\n", pos)
                continue
            end = pos
            while not data[end:end + 1].isspace():
                end += 1
            fields.append(data[pos:end])
            pos = end
        if fields[0] != b"P6" or fields[3] != b"255":
            raise ValueError("not an 8-bit binary PPM")
        self.width, self.height = int(fields[1]), int(fields[2])
        self.pixels = data[pos + 1:]

    def at(self, x, y):
        i = 3 * (y * self.width + x)
        return tuple(self.pixels[i:i + 3])

    def save(self, path):
        with open(path, "wb") as f:
            f.write(b"P6\n%d %d\n255\n" % (self.width, self.height) + self.pixels)


def colour(text):
    return tuple(int(text[i:i + 2], 16) for i in (1, 3, 5))


def dark(rgb, limit=110):
    return sum(rgb) / 3 < limit


class Cadhost:
    """cadhost in its window mode on the given X server, with a profile folder of its own. Keeps
    its shots (Cadhost.shot with keep) in its work folder."""

    def __init__(self, screen, args=(), env=None, workdir=None):
        self.screen = screen
        self.work = workdir or tempfile.mkdtemp(prefix="cadhost-screen-")
        self.profile = os.path.join(self.work, "profile")
        os.makedirs(self.profile, exist_ok=True)
        self.report_path = os.path.join(self.work, "report.json")
        self.env = {k: v for k, v in os.environ.items() if k not in ("XDG_RUNTIME_DIR", "QT_SCALE_FACTOR")}
        self.env.update({"DISPLAY": screen.display, "QT_QPA_PLATFORM": "xcb", "HOME": self.work,
                         "XDG_CONFIG_HOME": os.path.join(self.work, "config"), "LANG": "C.UTF-8",
                         "CADHOST_SCREEN_REPORT": self.report_path, "QT_QPA_PLATFORMTHEME": ""})
        self.env.update(env or {})
        self.out = open(os.path.join(self.work, "output.txt"), "wb")
        self.process = subprocess.Popen([os.environ["CADHOST"], "--profile", self.profile, *args], env=self.env,
                                        cwd=self.work, stdout=self.out, stderr=subprocess.STDOUT)

    def output(self):
        self.out.flush()
        with open(os.path.join(self.work, "output.txt"), "rb") as f:
            return f.read().decode(errors="replace")

    def report(self):
        try:
            with open(self.report_path, encoding="utf-8") as f:
                return json.load(f)["windows"]
        except (OSError, ValueError, KeyError):
            return []

    def wait_window(self, test, what, timeout=15):
        """The first window of the report for which test holds; fails after timeout seconds."""
        deadline = time.time() + timeout
        while time.time() < deadline:
            if self.process.poll() is not None:
                raise AssertionError(f"cadhost ended ({self.process.returncode}) waiting for {what}:\n"
                                     + self.output())
            for window in self.report():
                if test(window):
                    return window
            time.sleep(0.1)
        raise AssertionError(f"no window {what} within {timeout} s; windows: "
                             + ", ".join(repr(w["title"]) for w in self.report()))

    def wait_gone(self, title, timeout=10):
        deadline = time.time() + timeout
        while time.time() < deadline:
            if not any(w["title"] == title for w in self.report()):
                return
            time.sleep(0.1)
        raise AssertionError(f"window {title!r} still open")

    def window(self, title_part):
        return self.wait_window(lambda w: title_part in w["title"], repr(title_part))

    def settle(self, seconds=0.4):
        # Two report periods: the geometry and the pixels have caught up with the last event.
        time.sleep(seconds)

    def xdo(self, *args):
        subprocess.run(["xdotool", *args], env=self.env, check=True, timeout=20,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def focus(self, window):
        self.xdo("windowfocus", "--sync", window["xid"])

    def type(self, window, text):
        self.focus(window)
        self.xdo("type", "--delay", "15", text)

    def key(self, window, *keys):
        self.focus(window)
        self.xdo("key", "--delay", "40", *keys)

    def click(self, window, x, y, button=1):
        """A click at (x, y) inside window, in logical pixels."""
        ratio = window.get("ratio", 1)
        gx, gy = window["geometry"][0], window["geometry"][1]
        self.xdo("mousemove", "--sync", str(int((gx + x) * ratio)), str(int((gy + y) * ratio)))
        self.xdo("click", str(button))

    def click_control(self, window, control):
        x, y, w, h = control["rect"]
        self.click(window, x + w // 2, y + h // 2)

    def command(self, line):
        """Types line into the command line of the main window and presses Return."""
        main = self.window("cadhost")
        entry = control(main, "CommandInput")
        self.click_control(main, entry)
        self.type(main, line)
        self.key(main, "Return")

    def shot(self, window, keep=None):
        data = subprocess.run(["import", "-window", window["xid"], "-depth", "8", "ppm:-"], env=self.env, check=True,
                              capture_output=True, timeout=20).stdout
        image = Image(data)
        if keep:
            image.save(os.path.join(self.work, keep + ".ppm"))
        return image

    def stop(self):
        end(self.process)
        self.out.close()
        # The screenshots and the report stay for a look when VARDESK_SCREEN_KEEP is set.
        if os.environ.get("VARDESK_SCREEN_KEEP"):
            print(f"screenshots and report kept in {self.work}")
        else:
            shutil.rmtree(self.work, ignore_errors=True)


def controls(window, path_part, cls=None):
    return [c for c in window["controls"] if path_part in c["path"] and (cls is None or c["class"] == cls)]


def control(window, path_part, cls=None):
    found = controls(window, path_part, cls)
    if not found:
        raise AssertionError(f"no control {path_part!r} in {window['title']!r}: "
                             + ", ".join(c["path"] for c in window["controls"]))
    return found[0]


def scaled(rect, ratio):
    return [int(round(v * ratio)) for v in rect]
