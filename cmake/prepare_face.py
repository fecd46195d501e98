"""Prepares a text face for being embedded: prepare_face.py FACE RESULT FAMILY

Lining, tabular figures, which the toolkit cannot ask a face for, become what every text is set with: their features get the
names of two that shaping always applies, required variation alternates and required ligatures. A family name of its own keeps
a face that is installed under the original name from being taken instead.
"""

import sys

from fontTools.ttLib import TTFont

ALWAYS_APPLIED = {"lnum": "rvrn", "tnum": "rlig"}
FAMILY_NAMES = {1, 4, 16}  # of the table "name": family, full name, typographic family


def main() -> None:
    source, result, family = sys.argv[1:]
    face = TTFont(source, recalcTimestamp=False)
    features = face["GSUB"].table.FeatureList.FeatureRecord if "GSUB" in face else []
    present = {record.FeatureTag for record in features}
    for record in features:
        renamed = ALWAYS_APPLIED.get(record.FeatureTag)
        if renamed and renamed not in present:
            record.FeatureTag = renamed
    for record in face["name"].names:
        if record.nameID in FAMILY_NAMES:
            record.string = family
    face.save(result)


main()
