"""The data files are what their generators make now: makes all of them again and compares byte for byte."""

import filecmp
import pathlib
import subprocess
import sys
import tempfile

generators, built = map(pathlib.Path, sys.argv[1:])
expected = {"chdat", "Qerrs", "pow228", "pprods", "primelist", "bprimes", "f256d", "f2t16d", "lrgpmes"}
with tempfile.TemporaryDirectory() as fresh:
    for generator in sorted(generators.glob("gen_*.py")):
        subprocess.run([sys.executable, "-B", generator, fresh], check=True)
    made = {file.name for file in pathlib.Path(fresh).iterdir()}
    assert made == expected, f"made {sorted(made)}"
    same, different, missing = filecmp.cmpfiles(fresh, built, expected, shallow=False)
    assert not different and not missing, f"different: {different}, missing: {missing}"
