"""The context-manager side of the tests' private services: started on entry, and closed again
both on exit and when starting fails half-way, so nothing a failed start began outlives the test."""


class PrivateService:
    def _start(self):
        raise NotImplementedError

    def close(self):
        raise NotImplementedError

    def __enter__(self):
        try:
            self._start()
        except BaseException:
            self.close()
            raise
        return self

    def __exit__(self, *exc):
        self.close()
