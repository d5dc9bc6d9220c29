"""on_screen.py WIDTH HEIGHT COMMAND...: runs a command on a virtual screen; its status is that of the command."""

import sys

import process


def main():
    process.exit_on_signals()
    try:
        with process.screen(int(sys.argv[1]), int(sys.argv[2])) as environment:
            with process.running(sys.argv[3:], env=environment) as command:
                command.wait()
    except OSError as error:
        sys.exit("on_screen: %s" % error)
    return process.status_of(command)


if __name__ == "__main__":
    sys.exit(main())
