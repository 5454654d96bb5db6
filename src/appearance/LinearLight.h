#pragma once

/// How much light a channel of an sRGB colour stands for; both from 0 to 1.
double toLinear(double channel);

/// The channel that stands for so much light.
double fromLinear(double light);
