"""What results have in common."""
from __future__ import annotations

import json
import os
from typing import Any, Union

__all__ = ["Result"]

Path = Union[str, bytes, "os.PathLike[Any]"]


class Result:
    """What was measured. `to_dict()` holds every value under the name that it has in the JSON of the command.

    A missing value is None, with its reason beside it.
    """

    _made: Any
    _type: Any

    def __init__(self, made: Any) -> None:
        self._made = made
        self._dict: dict[str, Any] | None = None

    def to_json(self, *, pictures: bool = False) -> str:
        """The text that the command writes; with `pictures` also what pages draw."""
        return self._made.to_json(pictures)

    @classmethod
    def from_json(cls, text: str) -> Any:
        """A result that was written as JSON; one without pictures has no points to draw. kx.FileError."""
        return cls(cls._type.from_json(text))

    def to_dict(self) -> dict[str, Any]:
        """All values."""
        if self._dict is None:
            self._dict = json.loads(self.to_json())
        return self._dict

    def pictures(self) -> Any:
        """What pages draw; empty where there is nothing to draw."""
        return json.loads(self.to_json(pictures=True)).get("pictures", {})

    def __getitem__(self, key: str) -> Any:
        return self.to_dict()[key]

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Result) or type(other) is not type(self):
            return NotImplemented
        return self.to_json(pictures=True) == other.to_json(pictures=True)

    __hash__ = None # type: ignore[assignment]

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self).from_json, (self.to_json(pictures=True),)

    def report(self, path: Path) -> None:
        """Writes the page of HTML that the command writes."""
        page = self._made.page()
        with open(path, "w", encoding="utf-8", newline="\n") as file:
            file.write(page)
