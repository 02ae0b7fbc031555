# The README's Python script runs as shown, and its answer agrees with the tool's.
import os
import re
import subprocess
import sys

from conftest import SOURCE_DIR, tool_json


def readme_scripts():
    text = open(os.path.join(SOURCE_DIR, "README.md"), encoding="utf-8").read()
    return re.findall(r"```python\n(.*?)```", text, re.S)


def test_the_readme_script_runs_and_answers_like_the_tool(tmp_path):
    scripts = readme_scripts()
    assert scripts, "the README shows no Python script"
    for script in scripts:
        done = subprocess.run([sys.executable, "-c", script], capture_output=True, text=True,
                              cwd=tmp_path, check=False)
        assert done.returncode == 0, done.stderr
    lines = done.stdout.splitlines()
    parts = tool_json("catalog", "parts", "--family", "ZORQA_V_LP", "--released")
    assert lines and len(lines) <= len(parts)
    for line in lines[:5]:
        name, rest = line.split(": ")
        need = tool_json("device", "--part", name)["record"]["as_minimum_flash_density"]
        fits = [r for r in tool_json("flash", "list") if r["device_bit_size"] >= need]
        assert rest == f"needs {need >> 20} Mbit, {len(fits)} flash chips fit"
