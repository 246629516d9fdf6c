#pragma once

#include <sstream>
#include <string>
#include <vector>

// Real file names of every product in the shipped catalogue.

namespace fakes {

struct ProductCase {
    std::string product, scene, date;
    std::string files;  ///< their names with blanks between; "~" stands for the scene
    /// "code common bucket" of the bands in their order, then "code role" of what is none.
    std::string bands;

    std::vector<std::string> fileNames() const {
        std::vector<std::string> names;
        std::istringstream words(files);
        for (std::string name; words >> name;) {
            if (const std::size_t place = name.find('~'); place != name.npos) {
                name.replace(place, 1, scene);
            }
            names.push_back(name);
        }
        return names;
    }
};

inline const ProductCase kProductCases[] = {
    {"landsat-mss-1-3-pre-collection", "LM11670381976179AAA04", "1976-06-27",
     "~_B7.TIF ~_B4.TIF ~_B5.TIF ~_B6.TIF",
     "B4 green reflective, B5 red reflective, B6 nir reflective, B7 nir reflective"},
    {"landsat-mss-1-3-c1-l1", "LM02_L1TP_167038_19770625_20180422_01_T2", "1977-06-25",
     "~_B4.TIF ~_BQA.TIF", "B4 green reflective, BQA quality"},
    {"landsat-mss-1-3-c2-l1", "LM03_L1TP_167038_19790625_20200906_02_T2", "1979-06-25",
     "~_B5.TIF ~_QA_PIXEL.TIF ~_MTL.txt", "B5 red reflective, QA_PIXEL quality, MTL metadata"},
    {"landsat-mss-4-5-pre-collection", "LM51950251985179AAA03", "1985-06-28", "~_B4.TIF ~_B1.TIF",
     "B1 green reflective, B4 nir reflective"},
    {"landsat-mss-4-5-c1-l1", "LM05_L1TP_195025_19850628_20180405_01_T2", "1985-06-28",
     "~_B2.TIF ~_B3.TIF", "B2 red reflective, B3 nir reflective"},
    {"landsat-mss-4-5-c2-l1", "LM04_L1GS_195025_19850628_20210918_02_T2", "1985-06-28",
     "~_B2.TIF ~_QA_RADSAT.TIF", "B2 red reflective, QA_RADSAT quality"},
    {"landsat-tm-pre-collection", "LT51950252010211KIS01", "2010-07-30",
     "~_B6.TIF ~_B7.TIF ~_B1.TIF", "B1 blue reflective, B7 swir22 reflective, B6 lwir thermal"},
    {"landsat-tm-lpgs", "L5195025_02520100730", "2010-07-30", "~_B10.TIF ~_B60.TIF ~_B40.TIF",
     "B1 blue reflective, B4 nir reflective, B6 lwir thermal"},
    {"landsat-tm-c1-l1", "LT05_L1TP_195025_20100730_20161014_01_T1", "2010-07-30",
     "~_B5.TIF ~_BQA.TIF", "B5 swir16 reflective, BQA quality"},
    {"landsat-tm-c1-l2", "LT05_L1TP_195025_20100730_20161014_01_T1", "2010-07-30",
     "~_sr_band4.tif ~_bt_band6.tif ~_pixel_qa.tif ~_sr_cloud_qa.tif",
     "B4 nir reflective, B6 lwir thermal, PIXEL_QA quality, CLOUD_QA mask"},
    {"landsat-tm-c2-l1", "LT05_L1TP_195025_20100730_20200823_02_T1", "2010-07-30",
     "~_B4.TIF ~_SZA.TIF", "B4 nir reflective, SZA angle"},
    {"landsat-tm-c2-l2", "LT05_L2SP_195025_20100730_20200823_02_T1", "2010-07-30",
     "~_SR_B4.TIF ~_ST_B6.TIF ~_SR_ATMOS_OPACITY.TIF ~_ST_QA.TIF",
     "B4 nir reflective, B6 lwir thermal, ATMOS_OPACITY ancillary, QA quality"},
    {"landsat-tm-ard-c1", "LT05_CU_027009_20100730_20181015_C01_V01", "2010-07-30",
     "~_SRB4.tif ~_BTB6.tif ~_PIXELQA.tif ~_SEZ4.tif",
     "B4 nir reflective, B6 lwir thermal, PIXELQA quality, SEZ4 angle"},
    {"landsat-tm-ard-c2", "LT05_CU_027009_20100730_20210425_02", "2010-07-30",
     "~_SR_B4.TIF ~_QA_LINEAGE.TIF", "B4 nir reflective, QA_LINEAGE quality"},
    {"landsat-etm-pre-collection", "LE71950252001211EDC00", "2001-07-30",
     "~_B8.TIF ~_B6_VCID_2.TIF ~_B6_VCID_1.TIF ~_B3.TIF",
     "B3 red reflective, B6_VCID_1 lwir thermal, B6_VCID_2 lwir thermal, B8 pan panchromatic"},
    {"landsat-etm-c1-l1", "LE07_L1TP_195025_20010730_20170204_01_T1", "2001-07-30",
     "~_B8.TIF ~_B6_VCID_1.TIF", "B6_VCID_1 lwir thermal, B8 pan panchromatic"},
    {"landsat-etm-c1-l2", "LE07_L1TP_195025_20010730_20170204_01_T1", "2001-07-30",
     "~_sr_band7.tif ~_radsat_qa.tif", "B7 swir22 reflective, RADSAT_QA quality"},
    {"landsat-etm-c2-l1", "LE07_L1TP_195025_20010730_20200917_02_T1", "2001-07-30",
     "~_B1.TIF ~_B8.TIF", "B1 blue reflective, B8 pan panchromatic"},
    {"landsat-etm-c2-l2", "LE07_L2SP_195025_20010730_20200917_02_T1", "2001-07-30",
     "~_SR_B1.TIF ~_ST_B6.TIF ~_SR_CLOUD_QA.TIF",
     "B1 blue reflective, B6 lwir thermal, CLOUD_QA mask"},
    {"landsat-etm-ard-c1", "LE07_AK_005011_20010730_20190530_C01_V01", "2001-07-30",
     "~_SRB7.tif ~_SRB1.tif", "B1 blue reflective, B7 swir22 reflective"},
    {"landsat-etm-ard-c2", "LE07_HI_002001_20010730_20210430_02", "2001-07-30",
     "~_SR_B5.TIF ~_ST_B6.TIF", "B5 swir16 reflective, B6 lwir thermal"},
    {"landsat-oli-tirs-pre-collection", "LC81950252013188LGN00", "2013-07-07",
     "~_B10.TIF ~_B4.TIF ~_B8.TIF ~_BQA.TIF ~_B9.TIF",
     "B4 red reflective, B9 cirrus reflective, B10 lwir11 thermal, B8 pan panchromatic, BQA "
     "quality"},
    {"landsat-oli-tirs-c1-l1", "LC08_L1TP_195025_20180707_20180717_01_T1", "2018-07-07",
     "~_B1.TIF ~_B11.TIF ~_ANG.txt", "B1 coastal reflective, B11 lwir12 thermal, ANG metadata"},
    {"landsat-oli-tirs-c1-l2", "LC08_L1TP_195025_20180707_20180717_01_T1", "2018-07-07",
     "~_bt_band10.tif ~_sr_band5.tif ~_sr_aerosol.tif",
     "B5 nir08 reflective, B10 lwir11 thermal, AEROSOL quality"},
    {"landsat-oli-tirs-c2-l1", "LC09_L1TP_195025_20220707_20230407_02_T1", "2022-07-07",
     "~_B2.TIF ~_VAA.TIF ~_QA_PIXEL.TIF", "B2 blue reflective, QA_PIXEL quality, VAA angle"},
    {"landsat-oli-tirs-c2-l2", "LC08_L2SP_005009_20150710_20200908_02_T2", "2015-07-10",
     "~_QA_PIXEL.TIF ~_SR_B7.TIF ~_SR_B1.TIF ~_SR_QA_AEROSOL.TIF ~_ST_B10.TIF ~_ST_EMIS.TIF "
     "~_ST_stac.json",
     "B1 coastal reflective, B7 swir22 reflective, B10 lwir11 thermal, QA_PIXEL quality, "
     "QA_AEROSOL quality, EMIS ancillary, STAC metadata"},
    {"landsat-oli-tirs-ard-c1", "LC08_CU_027009_20180707_20190614_C01_V01", "2018-07-07",
     "~_SRB2.tif ~_BTB11.tif ~_SRAEROSOLQA.tif",
     "B2 blue reflective, B11 lwir12 thermal, AEROSOLQA quality"},
    {"landsat-oli-tirs-ard-c2", "LC08_CU_027009_20180707_20210504_02", "2018-07-07",
     "~_SR_B2.TIF ~_ST_B10.TIF ~_QA_PIXEL.TIF",
     "B2 blue reflective, B10 lwir11 thermal, QA_PIXEL quality"},
    {"landsat-tm-c1-l2-toa", "LT05_L1TP_010065_19880119_20170209_01_T1", "1988-01-19",
     "~_toa_band3.tif ~_toa_band1.tif", "B1 blue reflective, B3 red reflective"},
    {"landsat-etm-c1-l2-toa", "LE07_L1TP_195025_20010730_20170204_01_T1", "2001-07-30",
     "~_toa_band4.tif ~_toa_band2.tif", "B2 green reflective, B4 nir reflective"},
    {"landsat-oli-tirs-c1-l2-toa", "LC08_L1TP_195025_20130707_20170503_01_T1", "2013-07-07",
     "~_toa_band9.tif ~_toa_band2.tif", "B2 blue reflective, B9 cirrus reflective"},
    {"landsat-tm-ard-c1-toa", "LT05_CU_011008_19860612_20181014_C01_V01", "1986-06-12",
     "~_TAB2.tif ~_TAB1.tif", "B1 blue reflective, B2 green reflective"},
    {"landsat-oli-tirs-ard-c1-toa", "LC08_CU_027009_20180707_20190614_C01_V01", "2018-07-07",
     "~_TAB4.tif ~_TAB2.tif", "B2 blue reflective, B4 red reflective"},
    {"landsat-tm-ard-c2-toa", "LT05_CU_011009_19860612_20210424_02", "1986-06-12",
     "~_TOA_B1.TIF ~_BT_B6.TIF", "B1 blue reflective, B6 lwir thermal"},
    {"landsat-etm-ard-c2-toa", "LE07_HI_002001_20010730_20210430_02", "2001-07-30",
     "~_TOA_B5.TIF ~_BT_B6.TIF", "B5 swir16 reflective, B6 lwir thermal"},
    {"landsat-etm-ard-c1-toa", "LE07_AK_005011_20010730_20190530_C01_V01", "2001-07-30",
     "~_TAB8.tif ~_TAB1.tif", "B1 blue reflective, B8 pan panchromatic"},
    {"landsat-oli-tirs-ard-c2-toa", "LC08_CU_027009_20180707_20210504_02", "2018-07-07",
     "~_TOA_B9.TIF ~_TOA_B2.TIF ~_BT_B10.TIF ~_QA_PIXEL.TIF",
     "B2 blue reflective, B9 cirrus reflective, B10 lwir11 thermal, QA_PIXEL quality"},
    {"sentinel-2-l1c", "T56JMM_20180629T000241", "2018-06-29",
     "~_B12.jp2 ~_B8A.jp2 ~_B02.jp2 ~_B10.jp2 ~_TCI.jp2",
     "B02 blue 10m, B8A nir08 20m, B10 cirrus 60m, B12 swir22 20m, TCI preview"},
    {"sentinel-2-l1c", "S2A_OPER_MSI_L1C_TL_EPA__20160605T113933_A000734_T32TQM", "2016-06-05",
     "~_B05.jp2 ~_B04.jp2", "B04 red 10m, B05 rededge 20m"},
    {"sentinel-2-l2a", "T32TQM_20210920T101019", "2021-09-20",
     "R10m/~_B08_10m.jp2 R20m/~_B02_20m.jp2 R60m/~_B09_60m.jp2 R20m/~_SCL_20m.tif",
     "B02 blue 20m, B08 nir 10m, B09 nir09 60m, SCL mask"},
    {"sentinel-2-l2a-cogs", "S2A_36QWD_20200701_0_L2A", "2020-07-01",
     "~/B04.tif ~/B01.tif ~/AOT.tif", "B01 coastal 60m, B04 red 10m, AOT ancillary"},
    {"sentinel-2-l2a-cogs", "S2B_T33TTG_20250703T100029_L2A", "2025-07-03",
     "~/B8A.tif ~/B02.tif ~/CLD_20m.tif", "B02 blue 10m, B8A nir08 20m, CLD_20m quality"},
    {"sentinel-2-l2a-bucket", "32_T_QM_2018_6_29_0", "2018-06-29",
     "/tiles/32/T/QM/2018/6/29/0/R10m/B02.jp2 /tiles/32/T/QM/2018/6/29/0/R20m/B11.jp2",
     "B02 blue 10m, B11 swir16 20m"},
    {"sentinel-2-l1c-bucket", "32_T_QM_2018_6_29_0", "2018-06-29",
     "/tiles/32/T/QM/2018/6/29/0/B02.jp2 /tiles/32/T/QM/2018/6/29/0/TCI.jp2",
     "B02 blue 10m, TCI preview"},
    {"hls-l30", "HLS.L30.T32TQM.2021263T100739.v2.0", "2021-09-20",
     "~.B05.tif ~.B10.tif ~.Fmask.tif ~.SZA.tif",
     "B05 nir08 reflective, B10 lwir11 thermal, Fmask mask, SZA angle"},
    {"hls-s30", "HLS.S30.T32TQM.2021263T101019.v2.0", "2021-09-20",
     "~.B8A.tif ~.B05.tif ~.Fmask.tif", "B05 rededge reflective, B8A nir08 reflective, Fmask mask"},
    {"cbers-4-mux", "CBERS_4_MUX_20170528_090_084_L2", "2017-05-28", "~_BAND7.tif ~_BAND5.tif",
     "BAND5 blue multispectral, BAND7 red multispectral"},
    {"cbers-4-awfi", "CBERS_4_AWFI_20191002_162_117_L4", "2019-10-02",
     "~_BAND16.tif ~_BAND13.tif ~_CMASK_GRID_SURFACE.tif",
     "BAND13 blue multispectral, BAND16 nir multispectral, CMASK mask"},
    {"cbers-4-pan5m", "CBERS_4_PAN5M_20191002_162_117_L2", "2019-10-02", "~_BAND1.tif",
     "BAND1 pan panchromatic"},
    {"cbers-4-pan10m", "CBERS_4_PAN10M_20191002_162_117_L4", "2019-10-02",
     "~_BAND4.tif ~_BAND2.tif", "BAND2 green multispectral, BAND4 nir multispectral"},
    {"cbers-4-irs", "CBERS_4_IRS_20161002_162_117_L2", "2016-10-02", "~_BAND9.tif ~_BAND12.tif",
     "BAND9 pan reflective, BAND12 lwir thermal"},
    {"cbers-4a-mux", "CBERS_4A_MUX_20200801_204_108_L4", "2020-08-01", "~_BAND8.tif ~_BAND6.tif",
     "BAND6 green multispectral, BAND8 nir multispectral"},
    {"cbers-4a-wfi", "CBERS_4A_WFI_20200801_204_108_L4", "2020-08-01", "~_BAND14.tif ~_BAND15.tif",
     "BAND14 green multispectral, BAND15 red multispectral"},
    {"cbers-4a-wpm", "CBERS_4A_WPM_20200801_204_108_L4", "2020-08-01", "~_BAND0.tif ~_BAND4.tif",
     "BAND4 nir multispectral, BAND0 pan panchromatic"},
    {"amazonia-1-wfi", "AMAZONIA_1_WFI_20220811_036_018_L4_LEFT", "2022-08-11",
     "~_BAND2.tif ~_BAND1.tif", "BAND1 blue multispectral, BAND2 green multispectral"},
};

}  // namespace fakes
