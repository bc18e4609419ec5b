"""The program's settings file as a test reads it back: the raw text of one key, as QSettings wrote it."""


def stored(path, key):
    """The value written for `key` in the INI file at `path`; None while the key (or the file) is missing."""
    try:
        with open(path) as settings:
            for line in settings:
                if line.startswith(key + "="):
                    return line.split("=", 1)[1].strip()
    except FileNotFoundError:
        pass
    return None
