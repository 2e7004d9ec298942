// Owners of GStreamer's objects: each gives its reference back.
#pragma once

#include <gst/gst.h>

#include <memory>

namespace orvane {

struct GivesBack {
    template <typename Object>
    void operator()(Object* object) const {
        gst_object_unref(object);
    }
    void operator()(GstCaps* caps) const { gst_caps_unref(caps); }
    void operator()(GstSample* sample) const { gst_sample_unref(sample); }
    void operator()(GstStructure* structure) const { gst_structure_free(structure); }
    void operator()(char* text) const { g_free(text); }
};

template <typename Object>
using GstOwner = std::unique_ptr<Object, GivesBack>;

using CapsOwner = GstOwner<GstCaps>;
using DeviceOwner = GstOwner<GstDevice>;
using ElementOwner = GstOwner<GstElement>;
using TextOwner = GstOwner<char>;

} // namespace orvane
