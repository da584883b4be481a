"""How much memory commands take for a text: textMemory.py KXMATH

At most four times the size of the text and 32 MiB, where lines have 16 bytes, as two numbers with four decimals take. A
line that is longer than any line of numbers takes no memory of its length.
"""
import os
import pathlib
import subprocess
import sys
import tempfile

MOST_TIMES = 4
MOST_BESIDE = 32 << 20  # bytes
LINES = 400000  # 16 bytes each
COMMANDS = {
    "t.csv": ("info {}", "wheel {}", "calibrate {} --position 2 --side larger-y", "convert {} o.xyzf", "convert {} o.ply",
              "convert {} o.pcd", "convert {} o.csv", "convert {} o.xyz"),
    "t.ply": ("info {}", "convert {} o.xyz"),
    "long.csv": ("info {}", "wheel {}", "convert {} o.ply"),
}


def write_inputs(folder):
    """Line by line: what this program takes counts for the programs that it starts."""
    def write(name, header, form):
        with open(folder / name, "w", encoding="ascii") as file:
            file.write(header)
            file.writelines(form.format(i * 0.0011, 100 + i % 89) for i in range(LINES))

    write("t.csv", "", "{:08.4f};{:6.2f}\n")
    write("t.ply", f"ply\nformat ascii 1.0\nelement vertex {LINES}\nproperty float x\nproperty float y\nend_header\n",
          "{:08.4f} {:6.2f}\n")
    with open(folder / "long.csv", "w", encoding="ascii") as file:
        file.writelines("1" * 4096 for _ in range(10000))


def peak_of(command, folder):
    """Bytes. What the command says is of no interest."""
    with subprocess.Popen(command, cwd=folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as process:
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    if not 0 <= process.returncode <= 4:
        sys.exit(f"{command} ends with {process.returncode}")
    return usage.ru_maxrss * 1024


def main():
    kxmath = os.path.abspath(sys.argv[1])
    isGood = True
    with tempfile.TemporaryDirectory(prefix="kxmath_memory_") as name:
        folder = pathlib.Path(name)
        write_inputs(folder)
        for file, commands in COMMANDS.items():
            size = (folder / file).stat().st_size
            most = MOST_BESIDE + (0 if file == "long.csv" else MOST_TIMES * size)
            for command in commands:
                peak = peak_of([kxmath, *command.format(file).split()], folder)
                isGood = isGood and peak <= most
                print(f"{command.format(file):30} {peak / 2**20:6.1f} MiB of {most / 2**20:6.1f}, {peak / size:.1f} times")
    return 0 if isGood else 1


if __name__ == "__main__":
    sys.exit(main())
