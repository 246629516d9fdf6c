#include <cpl_vsi.h>
#include <gdal_priv.h>

#include <memory>

#include "gdal/SetDataset.h"
#include "gdal/SetName.h"

/// Entry point: GDAL calls it after loading the module "gdal_KESTMS".
extern "C" __attribute__((visibility("default"))) void GDALRegister_KESTMS();

namespace {

constexpr const char* kOpenOptions =
    "<OpenOptionList>"
    "<Option name='SCENE' type='string' description='Name of the scene to open, where there are "
    "several'/>"
    "<Option name='PRODUCTS' type='string' description='A catalogue of products that names the "
    "bands, before those known already'/>"
    "<Option name='BANDS' type='string' description='Bands to show, in this order: names, common "
    "names, numbers or patterns, with commas between them'/>"
    "<Option name='ORDER' type='string-select' default='number' description='Order of the bands: "
    "by number, or those shown as red, green and blue first'>"
    "<Value>number</Value><Value>display</Value></Option>"
    "</OpenOptionList>";

/// GDAL's own way deletes every file of a set, also before a program writes over its document. The
/// components stay.
CPLErr deleteDocument(const char* name) {
    if (kestgdal::parseSetName(name)) {
        CPLError(CE_Failure, CPLE_NotSupported, "%s: sets are read only", name);
        return CE_Failure;
    }
    if (VSIUnlink(name) != 0) {
        CPLError(CE_Failure, CPLE_FileIO, "%s: cannot be deleted", name);
        return CE_Failure;
    }
    return CE_None;
}

/// Under new names the components would no longer be those that the document lists.
CPLErr refuseNewName(const char* /*newName*/, const char* name) {
    CPLError(CE_Failure, CPLE_NotSupported, "%s: sets are read only", name);
    return CE_Failure;
}

}  // namespace

void GDALRegister_KESTMS() {
    if (!GDAL_CHECK_VERSION("KESTMS driver") || GDALGetDriverByName("KESTMS") != nullptr) {
        return;
    }
    auto driver = std::make_unique<GDALDriver>();
    driver->SetDescription("KESTMS");
    driver->SetMetadataItem(GDAL_DCAP_RASTER, "YES");
    driver->SetMetadataItem(GDAL_DCAP_OPEN, "YES");
    driver->SetMetadataItem(GDAL_DMD_LONGNAME, "Multispectral image sets of single-band files");
    driver->SetMetadataItem(GDAL_DMD_CONNECTION_PREFIX, "KESTMS:");
    driver->SetMetadataItem(GDAL_DMD_SUBDATASETS, "YES");
    driver->SetMetadataItem(GDAL_DMD_OPENOPTIONLIST, kOpenOptions);
    driver->pfnIdentify = kestgdal::SetDataset::identify;
    driver->pfnOpen = kestgdal::SetDataset::open;
    driver->pfnDelete = deleteDocument;
    driver->pfnRename = refuseNewName;
    driver->pfnCopyFiles = refuseNewName;
    GetGDALDriverManager()->RegisterDriver(driver.release());
}
