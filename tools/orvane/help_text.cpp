#include "tools/orvane/help_text.h"

namespace orvane::tools {

const char* const kHelpText =
    R"(orvane: finds the face in a photograph and makes a portrait for an identity card.

  orvane portrait PHOTO... -o FILE|FOLDER [option...]
  orvane detect PHOTO... [option...]
  orvane check PHOTO|PORTRAIT... [option...]
  orvane watch FOLDER -o FOLDER [option...]
  orvane documents [TABLE] [--json]
  orvane print PORTRAIT... -o FILE.pdf|png|jpg [option...]
  orvane report join REPORT... -o REPORT [--force]
  orvane info [--json]
  orvane help | version

portrait writes one picture a photo: into FILE, whose extension tells the format (.jpg, .png, .bmp,
.tif), or into an existing FOLDER under the photo's name with .png.
  --document NAME      as a document asks for it, by its name in 'orvane documents' or from a table of
                       one's own, FILE.toml or FILE.toml#NAME
  --size WIDTHxHEIGHT  of the portrait (35x45mm): in millimetres, and then exactly as large; or in pixels,
                       each 75 to 32767, the width a multiple of 4, one side growing with the crop
  --dpi N              pixels an inch, 36 to 2400: how many pixels a size in millimetres has (300), and what
                       the file tells
  --head LOW-HIGHmm    from chin to crown (32-36mm), for a size in millimetres
  --crop-ratio RATIO   in place of the head's size: the portrait is three times RATIO faces high; above 0,
                       up to 10; 1 for a size in pixels
  --fill FILL          fills what the photo lacks in the frame, with its edge, white or #RRGGBB
  --allow-edits        background and colour also where the document's authority takes no altered photo
  --actions LIST       what is done, of crop, background, colour, rotation, with commas (crop), or none;
                       without crop the portrait keeps the photo's size
  --tolerance PERCENT  what counts as background (40), 0 to 99; under 5 the background stays
  --rotate DEGREES     turns the portrait clockwise, -359 to 359; switches rotation on
  --steps FOLDER       also writes the picture after each action, and the background's mask, into an
                       existing folder: PHOTO-0-crop.png and so on
  --sheet FILE         a contact sheet of all photos, those that failed first, as .jpg, .png or .pdf
The portrait's file:
  --quality N          of .jpg (95), 1 to 100
  --chroma KIND        of .jpg (420): 444, 422 or 420
  --max-kb N           at most N times 1000 bytes: a .jpg has the highest quality that fits
  --min-kb N           at least N times 1024 bytes: a .jpg has more quality then, and comments; a .png comments
  --keep-metadata      camera, dates and rights of the photograph go along, into .jpg and .png
detect prints the face rectangle in pixels of the photo, counted from its upper left corner.
  --all                also each group of hits that the detector formed, in its order

check measures the face, what is around it and the background, and changes nothing: each value with
its band, and whether it is ok, low or high. docs/checks.md tells what they mean.
  --document NAME      whose bands count, a document or a table of one's own; a picture of its
                       proportions is taken for its portrait, and measured in millimetres
portrait and check take faces that were marked by hand:
  --face X,Y,W,H       the face of a single photo, in its pixels
  --corrections FILE   of many: CSV with the columns photograph, x, y, width, height

All three take many photos: a PHOTO may be a folder, of which all photos are taken.
  -r, --recursive      also the folders in a folder
  --files-from LIST    also the photos and folders of a file, one a line or with a zero byte behind
                       each; - for standard input
  --shard I/N          only the photos whose names fall to part I of N, for several machines
  --jobs N             worker processes (one a processor), 1 to 256
  --timeout SECONDS    how long a photo may take (30)
  --memory SIZE        how much memory a worker may take (2G), such as 500M
  --report FILE        one row a photo, as .csv or .jsonl
  --force              replaces existing files
  --json               one object a photo and line on standard output
  --quiet              no lines of photos that went well, and no progress
portrait alone:
  --output-name NAME   of each portrait in the folder ({stem}.png): {stem} is the photo's name,
                       {folder} its folder below the one given, {number} its number
  --resume             skips photos whose portraits an earlier run made into the folder

watch makes a portrait of each photo that lies in a folder or arrives there, until Ctrl-C, with the
options of portrait but -r, --files-from, --steps, --resume and {number}. The photo stays where it is and
is not done again; one that gives no portrait moves to the folder 'failed' of -o, with a text beside it
that says why. Names with a dot in front, or another extension than a photo's, are left alone.

documents lists what authorities ask for: size, head, eyes, background, file.

print puts portraits in their true size on sheets of paper; a .pdf may have several.
  --paper SIZE         A4, A5, A6, letter, or such as 10x15cm (the default), 4x6in, 102x152mm
  --copies N           of each portrait; as many as one sheet takes when not given
  --gap LENGTH         between portraits (2mm)
  --margin LENGTH      that stays white at the paper's edges (3mm)
  --cut-marks          short lines that go on from the portraits' edges
  --size WIDTHxHEIGHT  of a portrait, such as 35x45mm, where its file does not tell its resolution
  --dpi N              pixels an inch of a sheet that is no .pdf (300)
  --force              replaces an existing file

report join makes one report of those of several shards or attempts.
info prints version, library, classifier and processor. -- ends the options.

Exit code: 0 all went well, 11 a value was out of its band, 10 a photo had no face, 1 any error, also in
the command line; 1 wins over 10, and 10 over 11; 130 interrupted, which a watch ends with 0. Each photo
that failed is one line on standard error, and the others are done all the same.
)";

} // namespace orvane::tools
