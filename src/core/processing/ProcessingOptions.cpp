#include "processing/ProcessingOptions.h"

namespace tagmoor {

void ProcessingOptions::chooseMode(ProcessingMode mode) {
    m_mode = mode;
    m_shown = CleanOptions{};
    m_startEnabled = true;
}

void ProcessingOptions::clickBox(Box box, bool on) {
    switch (box) {
    case Box::Exif:
        m_clean.cleanExif = m_clean.cleanGPS = m_clean.cleanComment = on;
        m_shown.cleanExif = m_shown.cleanGPS = m_shown.cleanComment = on;
        break;
    case Box::Iptc:
        m_clean.cleanIPTC = m_shown.cleanIPTC = on;
        break;
    case Box::Xmp:
        m_clean.cleanXMP = m_shown.cleanXMP = on;
        break;
    case Box::Gps:
        m_clean.cleanGPS = m_shown.cleanGPS = on;
        if (!on)
            m_clean.cleanExif = m_shown.cleanExif = false;
        break;
    case Box::Comment:
        m_clean.cleanComment = m_shown.cleanComment = on;
        if (!on)
            m_clean.cleanExif = m_shown.cleanExif = false;
        break;
    }
    m_startEnabled = m_shown.any();
}

bool ProcessingOptions::shows(Box box) const {
    switch (box) {
    case Box::Exif:
        return m_shown.cleanExif;
    case Box::Iptc:
        return m_shown.cleanIPTC;
    case Box::Xmp:
        return m_shown.cleanXMP;
    case Box::Gps:
        return m_shown.cleanGPS;
    case Box::Comment:
        break;
    }
    return m_shown.cleanComment;
}

} // namespace tagmoor
