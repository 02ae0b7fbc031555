# Shared fixtures of the Python module's tests: the built tool as the second opinion.
import json
import os
import subprocess

import pytest

TOOL = os.environ.get("PGMDEV_TOOL", "pgmdev")
SOURCE_DIR = os.environ.get("PGMDEV_SOURCE_DIR", os.path.join(os.path.dirname(__file__), "../.."))


def run_tool(*args, stdin=None):
    """The tool's exit code, standard output and standard error."""
    done = subprocess.run([TOOL, *args], input=stdin, capture_output=True, text=True, check=False)
    return done.returncode, done.stdout, done.stderr


def tool_json(*args, refused=False):
    """The tool's --json answer to the same question (with `refused`, one it says no to)."""
    code, out, err = run_tool(*args, "--json")
    assert (code != 0) == refused, err
    return json.loads(out)


def tool_error(*args):
    """The sentence the tool prints for a refused question (without its "pgmdev: ")."""
    code, _, err = run_tool(*args)
    assert code != 0
    line = err.strip().splitlines()[-1]
    assert line.startswith("pgmdev: ")
    return line[len("pgmdev: "):]


@pytest.fixture
def user_folder(tmp_path, monkeypatch):
    """A scratch folder for the user's pgm_flash.ini, for the module and the tool alike."""
    monkeypatch.setenv("PGMDEV_MODULE_DIR", str(tmp_path))
    return tmp_path


def sample(items, count):
    """About `count` items spread evenly over the list, first and last included."""
    if len(items) <= count:
        return list(items)
    step = (len(items) - 1) / (count - 1)
    return [items[round(i * step)] for i in range(count)]
