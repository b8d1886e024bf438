# The one exception that leaves the component.
"""The exception of the package."""

MEMBER_NOT_FOUND = 438
NAMED_ARGUMENT_NOT_FOUND = 448
WRONG_ARGUMENT_COUNT = 450
PROJECT = "PelmComum2008"


class Error(Exception):
    """A failure as the component tells it: `number`, `source` and `description`."""

    def __init__(self, number, source, description):
        super().__init__(number, source, description)
        self.number = number
        self.source = source
        self.description = description

    def __str__(self):
        where = f"{self.source}: " if self.source else ""
        return f"{where}{self.description} ({self.number})"


class MemberNotFound(Error, AttributeError):
    """An Error that `hasattr` and `getattr` with a default understand as well."""


def error_of(number, source, description):
    return (MemberNotFound if number == MEMBER_NOT_FOUND else Error)(number, source, description)
