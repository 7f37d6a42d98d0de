#include "dates/DateField.h"

namespace tagmoor {

const char* dateFieldKey(DateField field) {
    switch (field) {
    case DateField::dateTimeOriginal:
        return "Exif.Photo.DateTimeOriginal";
    case DateField::creationDate:
        return "Exif.Photo.DateTimeDigitized";
    case DateField::modifyDate:
        return "Exif.Image.DateTime";
    case DateField::createDateXMP:
        return "Xmp.xmp.CreateDate";
    case DateField::modifyDateXMP:
        return "Xmp.xmp.ModifyDate";
    case DateField::createDateXMPPhotoshop:
        return "Xmp.photoshop.DateCreated";
    }
    return "";
}

const char* dateFieldName(DateField field) {
    switch (field) {
    case DateField::dateTimeOriginal:
        return "dateTimeOriginal";
    case DateField::creationDate:
        return "creationDate";
    case DateField::modifyDate:
        return "modifyDate";
    case DateField::createDateXMP:
        return "createDateXMP";
    case DateField::modifyDateXMP:
        return "modifyDateXMP";
    case DateField::createDateXMPPhotoshop:
        return "createDateXMPPhotoshop";
    }
    return "";
}

} // namespace tagmoor
