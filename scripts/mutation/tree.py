"""A copy of the project with all faults in it, each asleep until it is asked for, and its build."""

import json
import os
import pathlib
import re
import shutil
import subprocess

from . import places, selection

ERROR = re.compile(r"^([^\s:]+):(\d+):\d+: (?:fatal )?error: ", re.MULTILINE)
BUILD_ROUNDS = 12

HEADER = """\
#pragma once

// Which fault is awake. VELMORA_MUTANT holds its number; VELMORA_MUTANTS_REACHED names a file for the
// numbers of all faults that a process comes by while none is awake.

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

#pragma GCC diagnostic ignored "-Wint-in-bool-context"
#pragma GCC diagnostic ignored "-Wextra"
#pragma GCC diagnostic ignored "-Wparentheses"
#pragma GCC diagnostic ignored "-Waddress"
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wunused-variable"
#pragma GCC diagnostic ignored "-Wtype-limits"
#pragma GCC diagnostic ignored "-Warray-bounds"
#pragma GCC diagnostic ignored "-Wstringop-overflow"
#pragma GCC diagnostic ignored "-Wstringop-overread"

inline constexpr int velmoraUnread = -1;
inline constexpr int velmoraRecording = -2;
inline constexpr int velmoraMutantLimit = 4096;
inline std::atomic<int> velmoraActiveMutant{velmoraUnread};
inline std::atomic<bool> velmoraReached[velmoraMutantLimit];

[[gnu::noinline]] inline bool velmoraMutantIsAwake(int number) {
  const int error = errno;
  const char* path = std::getenv("VELMORA_MUTANTS_REACHED");
  if (velmoraActiveMutant == velmoraUnread) {
    const char* text = std::getenv("VELMORA_MUTANT");
    velmoraActiveMutant = path != nullptr ? velmoraRecording : text != nullptr ? std::atoi(text) : 0;
  }
  if (velmoraActiveMutant == velmoraRecording && !velmoraReached[number].exchange(true)) {
    // One write at the file's end, so processes and threads do not disturb each other.
    if (std::FILE* file = path != nullptr ? std::fopen(path, "ae") : nullptr; file != nullptr) {
      std::fprintf(file, "%d\\n", number);
      std::fclose(file);
    }
  }
  errno = error;
  return velmoraActiveMutant == number;
}

inline bool velmoraMutant(int number) {
  const int active = velmoraActiveMutant.load(std::memory_order_relaxed);
  return active >= 0 ? active == number : velmoraMutantIsAwake(number);
}
"""


def files_of(root):
    names = subprocess.run(["git", "ls-files", "-z", "-co", "--exclude-standard"], cwd=root,
                           check=True, capture_output=True).stdout.decode().split("\0")
    return [name for name in names if name and (root / name).is_file()]


def with_faults(text, faults):
    """The source with its faults, each a number and what stands there; lines keep their numbers."""
    for number, fault in sorted(faults, key=lambda pair: -pair[1].start):
        code = fault.code.replace("{n}", str(number)).encode()
        text = text[:fault.start] + code + text[fault.end:]
    return b'#include "VelmoraMutant.h"\n#line 1\n' + text


class Tree:
    def __init__(self, root, work, only=""):
        self.root, self.work, self.folder = root, work, work / "tree"
        self.names = files_of(root)
        self.sources = {name: (root / name).read_bytes() for name in self.names
                        if name.endswith(".cpp") and name.split("/")[0] in selection.LAYERS
                        and name not in selection.TABLES and name.startswith(only)}
        self.environment = dict(os.environ)
        if shutil.which("ccache"):
            self.environment |= {"CMAKE_CXX_COMPILER_LAUNCHER": "ccache", "CCACHE_NOHASHDIR": "1",
                                 "CCACHE_BASEDIR": str(self.folder)}

    def write(self, faults=()):
        """Writes what differs only, so that a build makes only that anew."""
        by_file = {}
        for number, fault in enumerate(faults, 1):
            if fault:
                by_file.setdefault(fault.file, []).append((number, fault))
        wanted = {"VelmoraMutant.h"}
        self.put("VelmoraMutant.h", HEADER.encode())
        for name in self.names:
            text = (self.root / name).read_bytes()
            if name in by_file:
                text = with_faults(text, by_file[name])
            self.put(name, text)
            shutil.copymode(self.root / name, self.folder / name)
            wanted.add(name)
        for path in list(self.folder.rglob("*")):
            name = str(path.relative_to(self.folder))
            if path.is_file() and name not in wanted and not name.startswith("build/"):
                path.unlink()

    def put(self, name, text):
        path = self.folder / name
        if not path.is_file() or path.read_bytes() != text:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(text)

    def run(self, *command):
        return subprocess.run(command, cwd=self.folder, env=self.environment, text=True,
                              capture_output=True, check=False)

    def configure(self):
        """Makes the commands, and the headers that the build generates; nothing is compiled."""
        done = self.run("cmake", "--preset", "dev", "--log-level=WARNING")
        if done.returncode != 0:
            raise SystemExit(f"mutate: the copy cannot be configured\n{done.stdout}{done.stderr}")
        build = self.folder / "build/dev"
        made = self.run("ninja", "-C", str(build), "-t", "targets", "rule", "CUSTOM_COMMAND").stdout
        for name in made.split("\n"):
            if name.endswith(".h"):
                # Alone: the libraries of its program, which it does not need, stand before it.
                command = self.run("ninja", "-C", str(build), "-t", "commands", "-s", name).stdout
                self.run("sh", "-c", command)

    def places(self):
        return selection.Places(self.folder, self.work / "places", self.sources)

    def build(self, chosen, say):
        """Builds; faults that do not compile are replaced. They are as many as the rounds allow."""
        for _ in range(BUILD_ROUNDS):
            self.write(chosen.faults)
            done = self.run("cmake", "--build", "--preset", "dev", "-j", str(os.cpu_count()),
                            "--", "-k", "0")
            if done.returncode == 0:
                return
            wrong = self.blamed(chosen.faults, done.stdout + done.stderr)
            if not wrong:
                raise SystemExit(f"mutate: the copy does not build\n{done.stdout}{done.stderr}")
            for number in sorted(wrong):
                fault = chosen.faults[number - 1]
                say(f"does not compile: {fault.file}:{fault.line}: {fault.kind}: {fault.old}")
                chosen.replace(number)
        raise SystemExit("mutate: the copy still does not build")

    def blamed(self, faults, output):
        """The numbers of the faults that the compiler's errors stand in."""
        wrong = set()
        for name, line in ERROR.findall(output):
            path = pathlib.Path(os.path.normpath(self.folder / "build/dev" / name))
            if not path.is_relative_to(self.folder):
                continue
            file = str(path.relative_to(self.folder))
            near = [(abs(int(line) - fault.line), number) for number, fault in enumerate(faults, 1)
                    if fault and fault.file == file]
            if near:
                wrong.add(min(near)[1])
        return wrong

    def digest(self, *options):
        return places.digest(*options, *(part for name in sorted(self.sources)
                                         for part in (name, self.sources[name])))

    def digest_of_tests(self):
        return places.digest(*((self.root / name).read_bytes() for name in sorted(self.names)
                               if name.startswith("Tests/")))

    def load(self, chosen, key):
        path = self.work / "chosen.json"
        kept = json.loads(path.read_text()) if path.exists() else {}
        if kept.get("key") != key:
            return False
        chosen.from_json(kept)
        return True

    def save(self, chosen, key):
        kept = {"key": key, **chosen.to_json()}
        (self.work / "chosen.json").write_text(json.dumps(kept, indent=1))
