#pragma once
// Template part of CGImageProperties.h: the walk over every present value.

namespace tagmoor {

namespace detail {
template <typename Group, typename Fn>
void visitGroup(const char* groupName, const SharedGroup<Group>& group, Fn& fn) {
    if (!group)
        return;
    for (const auto& f : Group::fields()) {
        const PropertyValue& v = (*group).*(f.member);
        if (v.isPresent())
            fn(groupName, f.name, f.imageIOKey, v);
    }
}
} // namespace detail

template <typename Fn> void forEachPresentValue(const CGImageProperties& r, Fn&& fn) {
    detail::visitGroup("tiffProperties", r.tiffProperties, fn);
    detail::visitGroup("gifProperties", r.gifProperties, fn);
    detail::visitGroup("jfifProperties", r.jfifProperties, fn);
    detail::visitGroup("exifProperties", r.exifProperties, fn);
    detail::visitGroup("pngProperties", r.pngProperties, fn);
    detail::visitGroup("iptcProperties", r.iptcProperties, fn);
    detail::visitGroup("gpsProperties", r.gpsProperties, fn);
    detail::visitGroup("ciffProperties", r.ciffProperties, fn);
    detail::visitGroup("makerCanonProperties", r.makerCanonProperties, fn);
    detail::visitGroup("makerNikonProperties", r.makerNikonProperties, fn);
    detail::visitGroup("bimProperties", r.bimProperties, fn);
    detail::visitGroup("exifAuxProperties", r.exifAuxProperties, fn);
    detail::visitGroup("openEXRProperties", r.openEXRProperties, fn);
    for (const auto& f : CGImageProperties::topLevelFields()) {
        const PropertyValue& v = r.*(f.member);
        if (v.isPresent())
            fn("", f.name, f.imageIOKey, v);
    }
    detail::visitGroup("colorModelProperties", r.colorModelProperties, fn);
    detail::visitGroup("xmpDataProperties", r.xmpDataProperties, fn);
}

} // namespace tagmoor
