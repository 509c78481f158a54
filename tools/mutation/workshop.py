"""A copy of the repository with a build of its own, in which sources are changed one at a time.

The tree is built once, with the preset "dev". After that a change costs one compiled file and one
linked library: the commands come from the build files, the objects go to a folder beside them, and
what they replace is put back afterwards.
"""

import contextlib
import hashlib
import json
import os
import re
import shlex
import shutil
import subprocess
from pathlib import Path

PRESET = "dev"
TARGETS = ("animatedimage", "framework", "tests/animatedimage/all", "tests/framework/all")
LIBRARIES = ("animatedimage", "framework")
TEST_FOLDERS = ("tests/animatedimage", "tests/framework")
KEPT = ".kept"
# LLVM's linker takes a tenth of the time, and debug information is of no use.
LINKER_OPTIONS = ["-fuse-ld=lld", "-Wl,--strip-debug"]
# A thousand random walks notice nearly what ten thousand do.
ENVIRONMENT = {"WALK_COUNT": "1000"}


class BuildFailed(Exception):
    """The unchanged tree does not build; the message is what the build said."""


def run(command, folder, **options):
    return subprocess.run(command, cwd=folder, capture_output=True, text=True, errors="replace",
                          check=False, **options)


def digest_of(*parts):
    joined = b"\0".join(p if isinstance(p, bytes) else p.encode() for p in parts)
    return hashlib.sha1(joined).hexdigest()


class Workshop:
    def __init__(self, root, folder):
        self.root = Path(root)
        self.tree = Path(folder) / "tree"
        self.build = self.tree / "build" / PRESET
        self.altered = Path(folder) / "altered"
        self.identities = Path(folder) / "identities.json"
        self.known = {}

    # The unchanged tree.

    def prepare(self, jobs, say):
        """Brings the tree up to date with the repository and builds it."""
        self._put_back_kept()
        self._copy_sources()
        shutil.rmtree(self.altered, ignore_errors=True)
        self.altered.mkdir(parents=True)
        if not (self.build / "build.ninja").exists():
            say(f"Configuring {self.tree}")
            option = "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON"
            self._checked(["cmake", "--preset", PRESET, option], self.tree)
        say(f"Building {self.tree}")
        self._checked(["ninja", f"-j{jobs}", *TARGETS], self.build)
        self._read_build_files()
        if self.identities.exists():
            self.known = json.loads(self.identities.read_text())

    def _checked(self, command, folder):
        done = run(command, folder)
        if done.returncode != 0:
            raise BuildFailed(f"{shlex.join(command)}\n{(done.stdout + done.stderr)[-4000:]}")

    def _put_back_kept(self):
        for kept in self.build.glob(f"*/*{KEPT}"):
            kept.replace(kept.with_name(kept.name.removesuffix(KEPT)))

    def _copy_sources(self):
        """What git knows or would add; a file that is the same keeps its time, so that nothing is
        built again for it."""
        listed = run(["git", "ls-files", "-co", "--exclude-standard", "-z"], self.root).stdout
        wanted = {name for name in listed.split("\0") if name and (self.root / name).is_file()}
        self.tree.mkdir(parents=True, exist_ok=True)
        for folder, folders, names in os.walk(self.tree):
            if Path(folder) == self.tree and "build" in folders:
                folders.remove("build")
            for name in names:
                path = Path(folder) / name
                if str(path.relative_to(self.tree)) not in wanted:
                    path.unlink()
        for name in wanted:
            source, copy = self.root / name, self.tree / name
            if copy.exists() and copy.read_bytes() == source.read_bytes():
                continue
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)

    # What the build files say.

    def _read_build_files(self):
        self.compilations = {}
        for entry in json.loads((self.build / "compile_commands.json").read_text()):
            found = re.search(r" -o (\S+)", entry["command"])
            # Without debug information a change of lines leaves no trace, and compiling is quicker.
            self.compilations[found.group(1)] = entry["command"].replace(" -g ", " -g0 ")
        self.dependencies = self._dependencies()
        self.library_files = [self._real_library(name) for name in LIBRARIES]
        self.tests = self._tests()
        outputs = self.library_files + [test["program"] for test in self.tests]
        note = self.altered.with_name("members.json")
        self.members = json.loads(note.read_text()) if note.exists() else {}
        self.links = {output: self._link_command(output) for output in outputs}
        note.write_text(json.dumps(self.members))

    def _dependencies(self):
        """Each object with the files of the tree that it is made from."""
        dependencies, current = {}, []
        for line in run(["ninja", "-t", "deps"], self.build).stdout.splitlines():
            if line and not line.startswith(" "):
                current = dependencies.setdefault(line.split(":")[0], [])
                continue
            path = os.path.normpath(self.build / line.strip())
            if path.startswith(str(self.tree)) and not path.startswith(str(self.build)):
                current.append(os.path.relpath(path, self.tree))
        return dependencies

    def _real_library(self, name):
        real = (self.build / "lib" / f"lib{name}.so").resolve()
        return str(real.relative_to(self.build))

    def _tests(self):
        listed = run(["ctest", "--show-only=json-v1"], self.build)
        tests, programs = [], set()
        for test in json.loads(listed.stdout)["tests"]:
            properties = {p["name"]: p["value"] for p in test["properties"]}
            folder = Path(properties["WORKING_DIRECTORY"])
            if not any(folder.is_relative_to(self.build / wanted) for wanted in TEST_FOLDERS):
                continue
            program = os.path.relpath(test["command"][0], self.build)
            # A program that is tested several times, with other seeds, is tried once.
            if program in programs:
                continue
            programs.add(program)
            given = dict(v.split("=", 1) for v in properties.get("ENVIRONMENT", []))
            tests.append({
                "name": test["name"], "program": program, "folder": str(folder),
                "command": test["command"],
                "environment": {**given, **ENVIRONMENT},
                "forbidden": properties.get("FAIL_REGULAR_EXPRESSION", []),
            })
        return tests

    def _link_command(self, output):
        """The command that links @p output, with the objects that it takes from our archives in
        the places of these."""
        command = run(["ninja", "-t", "commands", "-s", output], self.build).stdout.strip()
        parts = command.splitlines()[-1].split(" && ")[1].split() + LINKER_OPTIONS
        archives = {p for p in parts if p.endswith(".a") and not p.startswith("/")}
        if not archives:
            return parts
        taken = self._members(output, parts)
        objects = [part for archive in sorted(archives) for part in self._archive_objects(archive)
                   if f"{archive}({Path(part).name})" in taken]
        kept = [part for part in parts if part not in archives]
        return [kept[0], *objects, *kept[1:]]

    def _members(self, output, command):
        """What the linker takes from archives, as "lib.a(object.o)"."""
        state = digest_of((self.build / output).read_bytes(), *command)
        if self.members.get(output, {}).get("state") != state:
            target = self.altered / "traced"
            parts = [str(target) if part == output else part for part in command]
            done = run(" ".join([*parts, "-Wl,--trace"]), self.build, shell=True)
            if done.returncode != 0:
                raise BuildFailed(f"{output} cannot be linked\n{done.stderr[-4000:]}")
            target.unlink()
            found = re.findall(r"^\S+\.a\(\S+\)$", done.stdout, re.MULTILINE)
            self.members[output] = {"state": state, "members": found}
        return set(self.members[output]["members"])

    def _archive_objects(self, archive):
        command = run(["ninja", "-t", "commands", "-s", archive], self.build).stdout
        return re.findall(r"\S+\.o(?=\s)", command)

    # Changes.

    def users_of(self, file, output):
        """The objects of a library or program that are made from @p file."""
        return [part for part in self.links[output]
                if part.endswith(".o") and file in self.dependencies.get(part, [])]

    def use_count(self, file):
        """How many objects are made from @p file."""
        return sum(file in used for used in self.dependencies.values())

    @contextlib.contextmanager
    def changed(self, file, text):
        """Within this @p file holds @p text."""
        path = self.tree / file
        original, times = path.read_bytes(), path.stat()
        try:
            path.write_text(text)
            yield
        finally:
            path.write_bytes(original)
            os.utime(path, ns=(times.st_atime_ns, times.st_mtime_ns))

    def compile(self, source_object, folder=None, extra=""):
        """Compiles one object anew, from the sources as they are, into a folder beside the build.
        Gives its path, or None when the compiler refuses."""
        target = Path(folder or self.altered) / source_object
        target.parent.mkdir(parents=True, exist_ok=True)
        command = self.compilations[source_object].replace(
            f" -o {source_object}", f"{extra} -o {shlex.quote(str(target))}")
        # Warnings about what was changed are of no interest, and the compiler cache does not know it.
        done = run(f"{command} -w", self.build, shell=True,
                   env={**os.environ, "CCACHE_DISABLE": "1"})
        return target if done.returncode == 0 else None

    def ingredients(self, source_object):
        """A digest of all that an object is made from."""
        contents = [(self.tree / name).read_bytes() for name in self.dependencies[source_object]]
        return digest_of(self.compilations[source_object], *contents)

    def identity(self, source_object):
        """The digest of what the unchanged sources are compiled to."""
        key = self.ingredients(source_object)
        if key not in self.known:
            compiled = self.compile(source_object)
            self.known[key] = digest_of(compiled.read_bytes()) if compiled else ""
            self.identities.write_text(json.dumps(self.known))
        return self.known[key]

    def optimised(self, source_object):
        """The digest of what the sources, as they are, are compiled to by the optimiser."""
        key = self.ingredients(source_object) + " optimised"
        if key not in self.known:
            compiled = self.compile(source_object, self.altered.with_name("optimised"), " -O2")
            self.known[key] = digest_of(compiled.read_bytes()) if compiled else ""
        return self.known[key]

    @contextlib.contextmanager
    def linked(self, output, replaced, extra=()):
        """Within this @p output is linked with other objects in the places of some of its own;
        gives whether the linker could."""
        parts = [str(replaced.get(part, part)) for part in self.links[output]]
        command = " ".join([*parts, *extra])
        path = self.build / output
        kept = path.with_name(path.name + KEPT)
        path.replace(kept)
        try:
            yield run(command, self.build, shell=True).returncode == 0
        finally:
            kept.replace(path)
