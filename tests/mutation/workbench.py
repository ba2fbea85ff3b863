"""A copy of the tree in a folder of its own, in which one fault at a time is built and tested."""

import json
import os
import re
import shutil
import signal
import subprocess
import threading
import time
from dataclasses import dataclass
from pathlib import Path

BUILD_TIME = 1800        # seconds
ADDRESS_SPACE = 4 << 20  # KiB that a faulty program may take
FILE_SIZE = 1 << 20      # blocks of 512 bytes that it may write into one file
FEW = 3                  # as few failures are looked at twice
AS_A_WHOLE = "as a whole"


class Stopped(Exception):
    """The user ended the measurement."""


class Runner:
    """Runs commands in process groups of their own, none of which outlives its command or this program."""

    def __init__(self):
        self.groups, self.lock, self.stopped = set(), threading.Lock(), False

    def stop(self):
        with self.lock:
            self.stopped = True
            for group in self.groups:
                os.killpg(group, signal.SIGKILL)

    def run(self, command, limit, output, **options):
        """The exit status, None where the time limit was reached."""
        with self.lock, open(output, "wb") as file:
            if self.stopped:
                raise Stopped
            process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=file, stderr=subprocess.STDOUT,
                                       start_new_session=True, **options)
            self.groups.add(process.pid)
        end = time.monotonic() + limit
        look = lambda: os.waitid(os.P_PID, process.pid, os.WEXITED | os.WNOHANG | os.WNOWAIT)
        while (ended := look()) is None and time.monotonic() < end:
            time.sleep(0.01)
        with self.lock:  # the group's number stays its own until the process has been waited for
            os.killpg(process.pid, signal.SIGKILL)
            self.groups.remove(process.pid)
            status = process.wait()
            if self.stopped:
                raise Stopped
        return status if ended else None


@dataclass
class Program:
    """A test program: one of GoogleTest's, or one that is a single test, such as the guided tour."""
    name: str
    command: tuple
    folder: str
    environment: dict
    many_tests: bool


class Workbench:
    def __init__(self, root, folder, runner):
        self.folder, self.runner = folder, runner
        self.tree, self.build_folder, self.scratch = folder / "tree", folder / "build", folder / "scratch"
        self.output = folder / "output"
        wanted = set(subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=root, check=True,
                                    capture_output=True, text=True).stdout.splitlines())
        for path in self.tree.rglob("*"):
            if path.is_file() and str(path.relative_to(self.tree)) not in wanted:
                path.unlink()
        for source in (root / name for name in wanted if (root / name).is_file()):
            target = self.tree / source.relative_to(root)
            if not target.is_file() or target.read_bytes() != source.read_bytes():
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(source, target)

    def configure(self):
        """With shared libraries a fault is one object and one library to build."""
        options = {"CMAKE_BUILD_TYPE": "Debug", "CMAKE_CXX_FLAGS_DEBUG": "-O1", "BUILD_SHARED_LIBS": "ON",
                   "CMAKE_POSITION_INDEPENDENT_CODE": "ON", "CMAKE_LINK_DEPENDS_NO_SHARED": "ON"}
        if shutil.which("ccache"):
            options["CMAKE_CXX_COMPILER_LAUNCHER"] = "ccache"
        if linker := next((name for name in ("mold", "lld") if shutil.which(name)), None):
            options |= {f"CMAKE_{kind}_LINKER_FLAGS": f"-fuse-ld={linker}" for kind in ("EXE", "SHARED", "MODULE")}
        return self.runner.run(["cmake", "-G", "Ninja", "-S", self.tree, "-B", self.build_folder] +
                               [f"-D{name}={value}" for name, value in options.items()],
                               BUILD_TIME, self.output) == 0

    def build(self, jobs=1):
        environment = os.environ | {"CCACHE_BASEDIR": str(self.folder), "CCACHE_NOHASHDIR": "1"}
        return self.runner.run(["cmake", "--build", self.build_folder, "-j", str(jobs)], BUILD_TIME, self.output,
                               env=environment) == 0

    def programs(self):
        """By name, the test programs that CTest knows; tests that run CMake only look at the sources."""
        listed = subprocess.run(["ctest", "--test-dir", self.build_folder, "--show-only=json-v1"], check=True,
                                capture_output=True, text=True).stdout
        found = {}
        for test in json.loads(listed)["tests"]:
            command = tuple(part for part in test["command"] if not part.startswith("--gtest_"))
            many_tests = len(command) < len(test["command"])
            name = Path(command[0]).name if many_tests else test["name"]
            if Path(command[0]).name != "cmake" and name not in found:
                properties = {item["name"]: item["value"] for item in test["properties"]}
                environment = dict(pair.split("=", 1) for pair in properties.get("ENVIRONMENT", []))
                found[name] = Program(name, command, properties["WORKING_DIRECTORY"], environment, many_tests)
        return found

    def run_program(self, program, limit, tests=None):
        """Which tests fail, and where the program crashed those that it began with."""
        shutil.rmtree(self.scratch, ignore_errors=True)
        self.scratch.mkdir()
        own = dict.fromkeys(("TMPDIR", "HOME", "XDG_DATA_HOME"), str(self.scratch))
        bounded = f'ulimit -c 0 -v {ADDRESS_SPACE} -f {FILE_SIZE}; exec "$@"'
        chosen = [f"--gtest_filter={tests}"] if tests and program.many_tests else []
        status = self.runner.run(["sh", "-c", bounded, "sh", *program.command, *chosen], limit, self.output,
                                 cwd=program.folder, env=os.environ | own | program.environment)
        if not program.many_tests:
            return ({program.name} if status != 0 else set()), []
        output = self.output.read_text(errors="replace")
        begun = re.findall(r"^\[ RUN      \] (\S+)", output, re.M)
        failed = set(re.findall(r"^\[  FAILED  \] (\w\S*\.[^\s,]+)", output, re.M))
        complete = re.search(r"^\[==========\] .* ran\.", output, re.M)
        if not complete and begun:
            failed.add(begun[-1])
        elif status != 0 and not failed:
            failed.add(AS_A_WHOLE)
        return {f"{program.name} {test}" for test in failed}, begun if status and not complete else []

    def findings(self, program, limit):
        """The tests that fail. One that crashes hides no others; one that fails by chance is not counted."""
        found, begun = self.run_program(program, limit)
        while begun:
            more, further = self.run_program(program, limit, "-" + ":".join(begun))
            found |= more
            begun = begun + further if further else []
        if 0 < len(found) <= FEW:
            names = [test.partition(" ")[2] for test in found]
            found &= self.run_program(program, limit, None if AS_A_WHOLE in names else ":".join(names))[0]
        return found
