#include "tools/operator/help_text.h"

namespace orvane::tools {

const char* const kOperatorUsage = R"(usage: orvane-operator review PHOTO -o OUT [option...]
       orvane-operator live [--device N] -o OUT [option...]
       orvane-operator devices [--json]
       orvane-operator help
)";

const char* const kOperatorHelp =
    R"(orvane-operator: an operator reviews the portrait that is made of a photograph or of a camera's picture.

  orvane-operator review PHOTO -o OUT [option...]
  orvane-operator live [--device N] -o OUT [option...]
  orvane-operator devices [--json]
  orvane-operator help

review finds the face, shows the portrait in the operator's window and, when the operator leaves it with
Ok, writes the portrait to OUT, whose extension tells the format (.jpg, .png, .bmp, .tif). Without a face
the operator marks it with a click.

live does the same with the live picture of a camera: Ok takes the picture that is on the screen, Freeze
holds it before. Whether a face stands in it is for the operator to see; what they accept is written.
  --device N           the camera, by its number in the list of 'devices' (0)

devices lists the cameras, one a line: number, name and what it delivers. No camera is an error.
  --json               all that is known, one JSON object a line

Of review and live:
  --actions LIST       what is done, of crop, background, colour, rotation, with commas (crop), or none;
                       without crop the portrait keeps the picture's size
  --size WIDTHxHEIGHT  pixels of the portrait (480x860), each 75 to 32767; the width becomes a multiple
                       of 4; where the picture has other proportions, one side grows
  --crop-ratio RATIO   how much is left around the face (1): the crop is three times RATIO face
                       heights high; above 0, up to 10
  --language FILE      the window's texts, a file in the folder of the library
  --hidden             no window: works by itself as long as it finds a face; review alone
  --force              replaces an existing OUT
An option's value stands behind a space or an equals sign. -- ends the options.

One line on standard output tells what was written, its size and the library's result code.

Exit code: 0 the portrait was made and written, or the cameras listed; 10 no face, and nothing was
written; 20 the operator cancelled; 1 any error, with one line on standard error.
)";

} // namespace orvane::tools
