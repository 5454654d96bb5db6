#include "preview/TextPreview.h"

TextPreview::~TextPreview() = default;
