#pragma once

// The field lists of the record's groups, each written once. Every list expands into the
// struct's members (in declared order) and into the group's field table, so that the
// members, their ImageIO key texts and the code that walks them cannot drift apart.
// A key of nullptr means the field has no ImageIO key and never travels in a dictionary.

#define TAGMOOR_TIFF_FIELDS(X)                                                                     \
    X(compression, "kCGImagePropertyTIFFCompression")                                              \
    X(photoetricInterpretation, "kCGImagePropertyTIFFPhotometricInterpretation")                   \
    X(documentName, "kCGImagePropertyTIFFDocumentName")                                            \
    X(imageDescription, "kCGImagePropertyTIFFImageDescription")                                    \
    X(make, "kCGImagePropertyTIFFMake")                                                            \
    X(model, "kCGImagePropertyTIFFModel")                                                          \
    X(orientation, "kCGImagePropertyTIFFOrientation")                                              \
    X(fxResolution, "kCGImagePropertyTIFFXResolution")                                             \
    X(fyResolution, "kCGImagePropertyTIFFYResolution")                                             \
    X(resolutionUnit, "kCGImagePropertyTIFFResolutionUnit")                                        \
    X(software, "kCGImagePropertyTIFFSoftware")                                                    \
    X(transferFunction, "kCGImagePropertyTIFFTransferFunction")                                    \
    X(dateTime, "kCGImagePropertyTIFFDateTime")                                                    \
    X(artist, "kCGImagePropertyTIFFArtist")                                                        \
    X(hostComputer, "kCGImagePropertyTIFFHostComputer")                                            \
    X(copyRight, "kCGImagePropertyTIFFCopyright")                                                  \
    X(whitePoint, "kCGImagePropertyTIFFWhitePoint")                                                \
    X(primaryChromaticities, "kCGImagePropertyTIFFPrimaryChromaticities")                          \
    X(tileWidth, "kCGImagePropertyTIFFTileWidth")                                                  \
    X(tileLength, "kCGImagePropertyTIFFTileLength")

#define TAGMOOR_EXIF_FIELDS(X)                                                                     \
    X(exposureTime, "kCGImagePropertyExifExposureTime")                                            \
    X(fNumber, "kCGImagePropertyExifFNumber")                                                      \
    X(exposureProgram, "kCGImagePropertyExifExposureProgram")                                      \
    X(spectralSensitivity, "kCGImagePropertyExifSpectralSensitivity")                              \
    X(isoSpeedRating, "kCGImagePropertyExifISOSpeedRatings")                                       \
    X(oecf, "kCGImagePropertyExifOECF")                                                            \
    X(sensitivityType, "kCGImagePropertyExifSensitivityType")                                      \
    X(standardOutputSensitivity, "kCGImagePropertyExifStandardOutputSensitivity")                  \
    X(recommendedExposureIndex, "kCGImagePropertyExifRecommendedExposureIndex")                    \
    X(isoSpeed, "kCGImagePropertyExifISOSpeed")                                                    \
    X(isoSpeedLatitudeyyy, "kCGImagePropertyExifISOSpeedLatitudeyyy")                              \
    X(isoSpeedLatitudezzz, "kCGImagePropertyExifISOSpeedLatitudezzz")                              \
    X(version, "kCGImagePropertyExifVersion")                                                      \
    X(dateTimeOriginal, "kCGImagePropertyExifDateTimeOriginal")                                    \
    X(dateTimeDigitized, "kCGImagePropertyExifDateTimeDigitized")                                  \
    X(componentsConfiguration, "kCGImagePropertyExifComponentsConfiguration")                      \
    X(compressedBitsPerPixel, "kCGImagePropertyExifCompressedBitsPerPixel")                        \
    X(shutterSpeedValue, "kCGImagePropertyExifShutterSpeedValue")                                  \
    X(apertureValue, "kCGImagePropertyExifApertureValue")                                          \
    X(brightnessValue, "kCGImagePropertyExifBrightnessValue")                                      \
    X(exposureBiasValue, "kCGImagePropertyExifExposureBiasValue")                                  \
    X(maxApertureValue, "kCGImagePropertyExifMaxApertureValue")                                    \
    X(subjectDistance, "kCGImagePropertyExifSubjectDistance")                                      \
    X(meteringMode, "kCGImagePropertyExifMeteringMode")                                            \
    X(lightSource, "kCGImagePropertyExifLightSource")                                              \
    X(flash, "kCGImagePropertyExifFlash")                                                          \
    X(focalLength, "kCGImagePropertyExifFocalLength")                                              \
    X(subjectArea, "kCGImagePropertyExifSubjectArea")                                              \
    X(makerNote, "kCGImagePropertyExifMakerNote")                                                  \
    X(userComment, "kCGImagePropertyExifUserComment")                                              \
    X(subsecTime, "kCGImagePropertyExifSubsecTime")                                                \
    X(subsecTimeOriginal, "kCGImagePropertyExifSubsecTimeOriginal")                                \
    X(subsecTimeDigitized, "kCGImagePropertyExifSubsecTimeDigitized")                              \
    X(flashPixVersion, "kCGImagePropertyExifFlashPixVersion")                                      \
    X(colorSpace, "kCGImagePropertyExifColorSpace")                                                \
    X(pixelXDimension, "kCGImagePropertyExifPixelXDimension")                                      \
    X(pixelYDimension, "kCGImagePropertyExifPixelYDimension")                                      \
    X(relatedSoundFile, "kCGImagePropertyExifRelatedSoundFile")                                    \
    X(flashEnergy, "kCGImagePropertyExifFlashEnergy")                                              \
    X(spatialFrequencyResponse, "kCGImagePropertyExifSpatialFrequencyResponse")                    \
    X(focalPlaneXResolution, "kCGImagePropertyExifFocalPlaneXResolution")                          \
    X(focalPlaneYResolution, "kCGImagePropertyExifFocalPlaneYResolution")                          \
    X(focalPlaneResolutionUnit, "kCGImagePropertyExifFocalPlaneResolutionUnit")                    \
    X(subjectLocation, "kCGImagePropertyExifSubjectLocation")                                      \
    X(exposureIndex, "kCGImagePropertyExifExposureIndex")                                          \
    X(sensingMethod, "kCGImagePropertyExifSensingMethod")                                          \
    X(fileSource, "kCGImagePropertyExifFileSource")                                                \
    X(sceneType, "kCGImagePropertyExifSceneType")                                                  \
    X(cfaPattern, "kCGImagePropertyExifCFAPattern")                                                \
    X(customRendered, "kCGImagePropertyExifCustomRendered")                                        \
    X(exposureMode, "kCGImagePropertyExifExposureMode")                                            \
    X(whiteBalance, "kCGImagePropertyExifWhiteBalance")                                            \
    X(digitalZoomRatio, "kCGImagePropertyExifDigitalZoomRatio")                                    \
    X(focalLenIn35mmFilm, "kCGImagePropertyExifFocalLenIn35mmFilm")                                \
    X(sceneCaptureType, "kCGImagePropertyExifSceneCaptureType")                                    \
    X(gainControl, "kCGImagePropertyExifGainControl")                                              \
    X(contrast, "kCGImagePropertyExifContrast")                                                    \
    X(saturation, "kCGImagePropertyExifSaturation")                                                \
    X(sharpness, "kCGImagePropertyExifSharpness")                                                  \
    X(deviceSettingDescription, "kCGImagePropertyExifDeviceSettingDescription")                    \
    X(subjectDistRange, "kCGImagePropertyExifSubjectDistRange")                                    \
    X(imageUniqueID, "kCGImagePropertyExifImageUniqueID")                                          \
    X(cameraOwnerName, "kCGImagePropertyExifCameraOwnerName")                                      \
    X(bodySerialNumber, "kCGImagePropertyExifBodySerialNumber")                                    \
    X(lensSpecification, "kCGImagePropertyExifLensSpecification")                                  \
    X(lensMake, "kCGImagePropertyExifLensMake")                                                    \
    X(lensModel, "kCGImagePropertyExifLensModel")                                                  \
    X(lensSerialNumber, "kCGImagePropertyExifLensSerialNumber")                                    \
    X(gamma, "kCGImagePropertyExifGamma")

#define TAGMOOR_IPTC_FIELDS(X)                                                                     \
    X(byLine, "kCGImagePropertyIPTCByline")                                                        \
    X(byLineTitle, "kCGImagePropertyIPTCBylineTitle")                                              \
    X(copyrightNotice, "kCGImagePropertyIPTCCopyrightNotice")                                      \
    X(headlines, "kCGImagePropertyIPTCHeadline")                                                   \
    X(captionAbstract, "kCGImagePropertyIPTCCaptionAbstract")                                      \
    X(writerEditor, "kCGImagePropertyIPTCWriterEditor")                                            \
    X(objectName, "kCGImagePropertyIPTCObjectName")                                                \
    X(category, "kCGImagePropertyIPTCCategory")                                                    \
    X(supplementalCategory, "kCGImagePropertyIPTCSupplementalCategory")                            \
    X(keywords, "kCGImagePropertyIPTCKeywords")                                                    \
    X(subLocation, "kCGImagePropertyIPTCSubLocation")                                              \
    X(city, "kCGImagePropertyIPTCCity")                                                            \
    X(provinceState, "kCGImagePropertyIPTCProvinceState")                                          \
    X(countryPrimaryLocationName, "kCGImagePropertyIPTCCountryPrimaryLocationName")                \
    X(countryPrimaryLocationCode, "kCGImagePropertyIPTCCountryPrimaryLocationCode")                \
    X(originalTransmissionRef, "kCGImagePropertyIPTCOriginalTransmissionReference")                \
    X(specialInstruction, "kCGImagePropertyIPTCSpecialInstructions")                               \
    X(credit, "kCGImagePropertyIPTCCredit")                                                        \
    X(source, "kCGImagePropertyIPTCSource")

#define TAGMOOR_GPS_FIELDS(X)                                                                      \
    X(latitudeRef, "kCGImagePropertyGPSLatitudeRef")                                               \
    X(latitude, "kCGImagePropertyGPSLatitude")                                                     \
    X(longitudeRef, "kCGImagePropertyGPSLongitudeRef")                                             \
    X(longitude, "kCGImagePropertyGPSLongitude")                                                   \
    X(altitudeRef, "kCGImagePropertyGPSAltitudeRef")                                               \
    X(altitude, "kCGImagePropertyGPSAltitude")

// The XMP group has no ImageIO dictionary; its keys are the record's own names.
#define TAGMOOR_XMP_FIELDS(X)                                                                      \
    X(serialNumber, "serialNumber")                                                                \
    X(lens, "lens")                                                                                \
    X(createDate, "createDate")                                                                    \
    X(modifyDate, "modifyDate")                                                                    \
    X(photoshopCreateDate, "photoshopCreateDate")

#define TAGMOOR_COLOR_MODEL_FIELDS(X)                                                              \
    X(rgb, "kCGImagePropertyColorModelRGB")                                                        \
    X(gray, "kCGImagePropertyColorModelGray")                                                      \
    X(cmyk, "kCGImagePropertyColorModelCMYK")                                                      \
    X(lab, "kCGImagePropertyColorModelLab")

#define TAGMOOR_PNG_FIELDS(X)                                                                      \
    X(author, "kCGImagePropertyPNGAuthor")                                                         \
    X(chromaticities, "kCGImagePropertyPNGChromaticities")                                         \
    X(comment, nullptr)                                                                            \
    X(copyright, "kCGImagePropertyPNGCopyright")                                                   \
    X(creationTime, "kCGImagePropertyPNGCreationTime")                                             \
    X(description, "kCGImagePropertyPNGDescription")                                               \
    X(disclaimer, nullptr)                                                                         \
    X(gamma, "kCGImagePropertyPNGGamma")                                                           \
    X(interlaceType, "kCGImagePropertyPNGInterlaceType")                                           \
    X(modificationTime, "kCGImagePropertyPNGModificationTime")                                     \
    X(software, "kCGImagePropertyPNGSoftware")                                                     \
    X(source, nullptr)                                                                             \
    X(sRGBIntent, "kCGImagePropertyPNGsRGBIntent")                                                 \
    X(title, "kCGImagePropertyPNGTitle")                                                           \
    X(warning, nullptr)                                                                            \
    X(xPixelsPerMeter, "kCGImagePropertyPNGXPixelsPerMeter")                                       \
    X(yPixelsPerMeter, "kCGImagePropertyPNGYPixelsPerMeter")                                       \
    X(loopCount, "kCGImagePropertyAPNGLoopCount")                                                  \
    X(delayTime, "kCGImagePropertyAPNGDelayTime")                                                  \
    X(unclampedDelayTime, "kCGImagePropertyAPNGUnclampedDelayTime")

#define TAGMOOR_GIF_FIELDS(X)                                                                      \
    X(loopCount, "kCGImagePropertyGIFLoopCount")                                                   \
    X(delayTime, "kCGImagePropertyGIFDelayTime")                                                   \
    X(imageColorMap, "kCGImagePropertyGIFImageColorMap")                                           \
    X(hasGlobalColorMap, "kCGImagePropertyGIFHasGlobalColorMap")                                   \
    X(unclampedDelayTime, "kCGImagePropertyGIFUnclampedDelayTime")

#define TAGMOOR_JFIF_FIELDS(X)                                                                     \
    X(version, "kCGImagePropertyJFIFVersion")                                                      \
    X(xDensity, "kCGImagePropertyJFIFXDensity")                                                    \
    X(yDensity, "kCGImagePropertyJFIFYDensity")                                                    \
    X(densityUnit, "kCGImagePropertyJFIFDensityUnit")                                              \
    X(isProgressive, "kCGImagePropertyJFIFIsProgressive")

#define TAGMOOR_CIFF_FIELDS(X)                                                                     \
    X(ciffDescription, "kCGImagePropertyCIFFDescription")                                          \
    X(ciffFirmware, "kCGImagePropertyCIFFFirmware")                                                \
    X(ciffOwnerName, "kCGImagePropertyCIFFOwnerName")                                              \
    X(ciffImageName, "kCGImagePropertyCIFFImageName")                                              \
    X(ciffFileName, "kCGImagePropertyCIFFImageFileName")                                           \
    X(ciffReleaseMethod, "kCGImagePropertyCIFFReleaseMethod")                                      \
    X(ciffReleaseTiming, "kCGImagePropertyCIFFReleaseTiming")                                      \
    X(ciffRecordID, "kCGImagePropertyCIFFRecordID")                                                \
    X(ciffSelfTimingTime, "kCGImagePropertyCIFFSelfTimingTime")                                    \
    X(ciffCameraSerialNumber, "kCGImagePropertyCIFFCameraSerialNumber")                            \
    X(ciffImageSerialNumber, "kCGImagePropertyCIFFImageSerialNumber")                              \
    X(ciffContinousDrive, "kCGImagePropertyCIFFContinuousDrive")                                   \
    X(ciffFocusMode, "kCGImagePropertyCIFFFocusMode")                                              \
    X(ciffMeteringMode, "kCGImagePropertyCIFFMeteringMode")                                        \
    X(ciffShootingMode, "kCGImagePropertyCIFFShootingMode")                                        \
    X(ciffLensMode, "kCGImagePropertyCIFFLensModel")                                               \
    X(ciffLensMaxMM, "kCGImagePropertyCIFFLensMaxMM")                                              \
    X(ciffLensMinMM, "kCGImagePropertyCIFFLensMinMM")                                              \
    X(ciffWhiteBalanceIndex, "kCGImagePropertyCIFFWhiteBalanceIndex")                              \
    X(ciffFlashExposureComp, "kCGImagePropertyCIFFFlashExposureComp")                              \
    X(ciffMesuredEV, "kCGImagePropertyCIFFMeasuredEV")

#define TAGMOOR_MAKER_CANON_FIELDS(X)                                                              \
    X(ownerName, "kCGImagePropertyMakerCanonOwnerName")                                            \
    X(cameraSerialNumber, "kCGImagePropertyMakerCanonCameraSerialNumber")                          \
    X(imageSerialNumber, "kCGImagePropertyMakerCanonImageSerialNumber")                            \
    X(flashExposureComp, "kCGImagePropertyMakerCanonFlashExposureComp")                            \
    X(canonContinousDrive, "kCGImagePropertyMakerCanonContinuousDrive")                            \
    X(canonLensModel, "kCGImagePropertyMakerCanonLensModel")                                       \
    X(canonFirmware, "kCGImagePropertyMakerCanonFirmware")                                         \
    X(canonAspectRatioInfo, "kCGImagePropertyMakerCanonAspectRatioInfo")

#define TAGMOOR_MAKER_NIKON_FIELDS(X)                                                              \
    X(isoSetting, "kCGImagePropertyMakerNikonISOSetting")                                          \
    X(colorMode, "kCGImagePropertyMakerNikonColorMode")                                            \
    X(quality, "kCGImagePropertyMakerNikonQuality")                                                \
    X(whiteBalanceMode, "kCGImagePropertyMakerNikonWhiteBalanceMode")                              \
    X(sharpenMode, "kCGImagePropertyMakerNikonSharpenMode")                                        \
    X(focusMode, "kCGImagePropertyMakerNikonFocusMode")                                            \
    X(flashSetting, "kCGImagePropertyMakerNikonFlashSetting")                                      \
    X(isoSelection, "kCGImagePropertyMakerNikonISOSelection")                                      \
    X(flashExposureComp, "kCGImagePropertyMakerNikonFlashExposureComp")                            \
    X(imageAdjustment, "kCGImagePropertyMakerNikonImageAdjustment")                                \
    X(lensAdapter, "kCGImagePropertyMakerNikonLensAdapter")                                        \
    X(lensType, "kCGImagePropertyMakerNikonLensType")                                              \
    X(lensInfo, "kCGImagePropertyMakerNikonLensInfo")                                              \
    X(focusDistance, "kCGImagePropertyMakerNikonFocusDistance")                                    \
    X(digitalZoom, "kCGImagePropertyMakerNikonDigitalZoom")                                        \
    X(shootingMode, "kCGImagePropertyMakerNikonShootingMode")                                      \
    X(cameraSerialNumber, "kCGImagePropertyMakerNikonCameraSerialNumber")                          \
    X(shutterCount, "kCGImagePropertyMakerNikonShutterCount")

#define TAGMOOR_BIM_FIELDS(X)                                                                      \
    X(layerNames, "kCGImageProperty8BIMLayerNames")                                                \
    X(version, "kCGImageProperty8BIMVersion")

#define TAGMOOR_EXIF_AUX_FIELDS(X)                                                                 \
    X(auxLensInfo, "kCGImagePropertyExifAuxLensInfo")                                              \
    X(auxLensModel, "kCGImagePropertyExifAuxLensModel")                                            \
    X(auxSerialNumber, "kCGImagePropertyExifAuxSerialNumber")                                      \
    X(auxLensID, "kCGImagePropertyExifAuxLensID")                                                  \
    X(auxLensSerialNumber, "kCGImagePropertyExifAuxLensSerialNumber")                              \
    X(auxImageNumber, "kCGImagePropertyExifAuxImageNumber")                                        \
    X(auxFlashCompensation, "kCGImagePropertyExifAuxFlashCompensation")                            \
    X(auxOwnerName, "kCGImagePropertyExifAuxOwnerName")                                            \
    X(auxFirmware, "kCGImagePropertyExifAuxFirmware")

#define TAGMOOR_OPEN_EXR_FIELDS(X) X(aspectRatio, "kCGImagePropertyOpenEXRAspectRatio")

// Top-level values of the record that ImageIO keeps beside its dictionaries.
#define TAGMOOR_TOP_LEVEL_FIELDS(X)                                                                \
    X(fileSize, "kCGImagePropertyFileSize")                                                        \
    X(pixelHeight, "kCGImagePropertyPixelHeight")                                                  \
    X(pixelWidth, "kCGImagePropertyPixelWidth")                                                    \
    X(dpiHeight, "kCGImagePropertyDPIHeight")                                                      \
    X(dpiWidth, "kCGImagePropertyDPIWidth")                                                        \
    X(bits, "kCGImagePropertyDepth")                                                               \
    X(orientation, "kCGImagePropertyOrientation")                                                  \
    X(isFloating, "kCGImagePropertyIsFloat")                                                       \
    X(isIndexed, "kCGImagePropertyIsIndexed")                                                      \
    X(hasAlpha, "kCGImagePropertyHasAlpha")

// Top-level values that follow colorModelProperties in the record.
#define TAGMOOR_TOP_LEVEL_TAIL_FIELDS(X)                                                           \
    X(iccName, "kCGImagePropertyProfileName")                                                      \
    X(isPrimaryImage, nullptr)                                                                     \
    X(createDate, nullptr)                                                                         \
    X(modifyDate, nullptr)
