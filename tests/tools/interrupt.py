"""Ctrl-C during an import: it is cancelled, says so, and the program ends as an
interrupted one does. The file is a pipe, so that the import waits for the signal.

    interrupt.py PROGRAM WORK_FOLDER
"""
import os
import signal
import subprocess
import sys

# Several times what the import reads between two looks at the signal.
ENOUGH_LINES = 400_000


def interrupt(arguments, pipe):
    """Returns the error output, the standard output and the exit code."""
    program = subprocess.Popen(arguments, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                               text=True)
    with open(pipe, "w") as obj_file:  # waits until the import has opened it
        program.send_signal(signal.SIGINT)
        try:
            obj_file.write("v 1 2 3\n" * ENOUGH_LINES)
        except BrokenPipeError:
            pass
        try:
            obj_file.close()
        except BrokenPipeError:
            pass
    output, errors = program.communicate(timeout=60)
    return errors, output, program.returncode


def main():
    program, work = sys.argv[1:]
    os.makedirs(work, exist_ok=True)
    pipe = os.path.join(work, "pipe.obj")
    written = os.path.join(work, "out.ply")
    if os.path.exists(pipe):
        os.remove(pipe)
    os.mkfifo(pipe)
    for arguments in (["info", pipe], ["check", pipe, "noSuchFile.obj"],
                      ["convert", pipe, written]):
        errors, output, code = interrupt([program, *arguments], pipe)
        last = errors.splitlines()[-1] if errors else ""
        if not last.endswith("error: Stopping conversion... Cancelled by host"):
            sys.exit(f"{arguments}: no such message: {errors}")
        if output or code != -signal.SIGINT or os.path.exists(written):
            sys.exit(f"{arguments}: exit code {code} and output {output}")


main()
