"""The day's timeline computed a second time, from the rules alone and with Python's own numbers and zones: what the program
prints is compared with this."""

from datetime import datetime, timezone
from zoneinfo import ZoneInfo

DEFAULT_FILTERS = {
    "timer.isTimer": False,
    "timer.isEvent": True,
    "timer.hasGuaranteedItems": False,
    "timer.dropsItems": False,
    "timer.hasAchievements": False,
    "timer.dropsCollectionsItems": False,
    "timer.isSpecialEvent": False,
}


class Fault(Exception):
    """The catalogue cannot be computed with. `section` is its id, `place` the step."""

    def __init__(self, section, place):
        super().__init__(f"section {section}, {place}")
        self.section, self.place = section, place


def toward_zero(number, divisor):
    return number // divisor if number >= 0 else -(-number // divisor)


def remainder(number, divisor):
    return number - divisor * toward_zero(number, divisor)


def int64(number, section, place):
    if not -2**63 <= number < 2**63:
        raise Fault(section, place)
    return number


def moment(text, zone):
    """A text without an offset is local, the first of two equal local times."""
    when = datetime.fromisoformat(text.replace("Z", "+00:00"))
    return when if when.tzinfo else when.replace(tzinfo=zone)


def offset_seconds(when, zone):
    # by way of UTC: a local time that a clock change skips has moved by then
    return int(when.astimezone(timezone.utc).astimezone(zone).utcoffset().total_seconds())


def enters(event, section, filters):
    if filters["timer.isTimer"] and event["name"] != "":
        return True
    if filters["timer.isEvent"] and event.get("chatlink") is not None:
        return True
    rewards = event.get("rewards")
    if rewards is None:
        return False
    by_list = {"timer.hasGuaranteedItems": "items", "timer.dropsItems": "random_items",
               "timer.dropsCollectionsItems": "items_for_achievements"}
    return (any(filters[name] and rewards.get(key) is not None for name, key in by_list.items())
            or filters["timer.hasAchievements"] and bool(rewards.get("achievements"))  # of which none is done here
            or filters["timer.isSpecialEvent"] and section["category"] == "Special Events")


def occurrences(section, filters, offset_minutes):
    start = offset_minutes
    found = []

    def play(name):
        nonlocal start
        for number, step in enumerate(section["sequences"][name]):
            place = f"sequences.{name}[{number}]"
            matching = [event for event in section["segments"] if event["id"] == step["r"]]
            if not matching:
                raise Fault(section["id"], place)
            event = matching[0]
            if enters(event, section, filters):
                gathering = int64(start - (event.get("lfg") or 0), section["id"], place)
                packed = event["id"] / 10000.0 + section["id"] / 100.0 + float(gathering)
                found.append((packed, start, gathering, section, event))
            start = int64(start + step["d"], section["id"], place)

    play("partial")
    advance = sum(step["d"] for step in section["sequences"]["pattern"])
    while True:
        play("pattern")
        if offset_minutes + 1440 < start:
            return found
        if advance <= 0:
            raise Fault(section["id"], "sequences.pattern")


def with_neighbours(day, offset_minutes):
    """The days before and after as well, each occurrence once; what runs beyond a day is the next one's."""
    found = {}
    for shift in (-1440, 0, 1440):
        for _, start, gathering, section, event in day:
            if start < offset_minutes + 1440 and -2**63 <= gathering + shift < 2**63:
                packed = event["id"] / 10000.0 + section["id"] / 100.0 + float(gathering + shift)
                one = (packed, start + shift, gathering + shift, section, event)
                found.setdefault((section["id"], event["id"], start + shift), one)
    return sorted(found.values(), key=lambda occurrence: occurrence[0])


def time_text(minutes):
    return "%02d:%02d" % (remainder(int(minutes / 60), 24), remainder(int(minutes), 60))


def timeline(sections, filters, when, zone, window_hours=None):
    """The list as the program prints it; with `window_hours` only what is visible then."""
    offset = offset_seconds(when, zone)
    found = []
    for section in sections:
        if section["active"]:
            found += occurrences(section, filters, toward_zero(offset, 60))
    found.sort(key=lambda occurrence: occurrence[0])

    if window_hours is not None:
        found = with_neighbours(found, toward_zero(offset, 60))
        local = when.astimezone(timezone.utc).astimezone(zone)
        now = local.hour * 60 + local.minute
        if local.hour < toward_zero(offset, 3600):
            now += 1440
        found = [
            one for one in found
            if now < one[0] + (one[4].get("lfg") or 0) and one[0] < now + window_hours * 60 + 1
        ]

    return [
        {
            "id": packed,
            "sectionId": section["id"],
            "section": section["name"],
            "eventId": event["id"],
            "name": event["name"],
            "startMinute": start,
            "gatheringMinute": gathering,
            # A shown one has the minute of its local day.
            "start": time_text(packed + (event.get("lfg") or 0) if window_hours is None else start % 1440),
            "gathering": time_text(packed if window_hours is None else gathering % 1440),
            "chatlink": event.get("chatlink"),
        }
        for packed, start, gathering, section, event in found
    ]
