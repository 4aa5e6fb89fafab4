"""What GDAL reads in a vector file, for the exchange tests: one JSON object per feature, with
its parts (every point, line and ring as a list of [x, y] positions, and whether each is a
point, line or ring) and its fields; the last line holds GDAL's errors and warnings while it
read. LIST holds one file a line: PATH, SOURCE and DRIVER apart by tabs; with a SOURCE, GDAL first
writes PATH from it (reprojected to WGS 84 when SOURCE names its coordinate system). Each view
follows {"file": PATH}, or {"file": PATH, "failed": true} when GDAL could not write or read it.
GeoJSON dates and times are read as the texts they are."""
import json
import sys

from osgeo import gdal, ogr, osr

gdal.UseExceptions()
complaints = []


def handler(level, number, message):
    if level >= gdal.CE_Warning:
        complaints.append(message)


gdal.PushErrorHandler(handler)


def parts(geometry, out, kinds, in_polygon=False):
    if geometry is None:
        return
    flat = ogr.GT_Flatten(geometry.GetGeometryType())
    if flat in (ogr.wkbPoint, ogr.wkbLineString, ogr.wkbLinearRing):
        points = geometry.GetPoints() or []
        out.append([[p[0], p[1]] for p in points])
        kinds.append("point" if flat == ogr.wkbPoint else "ring" if in_polygon or flat == ogr.wkbLinearRing else "line")
    else:
        polygon = flat in (ogr.wkbPolygon, ogr.wkbTriangle)
        for i in range(geometry.GetGeometryCount()):
            parts(geometry.GetGeometryRef(i), out, kinds, polygon)


def field_value(feature, i):
    if not feature.IsFieldSetAndNotNull(i):
        return None
    kind = feature.GetFieldDefnRef(i).GetType()
    if kind in (ogr.OFTReal, ogr.OFTInteger, ogr.OFTInteger64):
        return feature.GetFieldAsDouble(i)
    return feature.GetFieldAsString(i)


def view(path, source=None, driver=None):
    if source is not None:
        options = {"format": driver}
        src = ogr.Open(source)
        layer = src.GetLayer(0) if src is not None and src.GetLayerCount() > 0 else None
        if layer is not None and layer.GetSpatialRef() is not None:
            options["dstSRS"] = "EPSG:4326"
        options["layerCreationOptions"] = ["RFC7946=NO"] if driver == "GeoJSON" else []
        gdal.VectorTranslate(path, source, **options)
        del complaints[:]
    options = ["DATE_AS_STRING=YES"] if path.endswith("json") else []
    dataset = gdal.OpenEx(path, gdal.OF_VECTOR, open_options=options)
    for layer in (dataset.GetLayer(i) for i in range(dataset.GetLayerCount())):
        for feature in layer:
            out, kinds = [], []
            parts(feature.GetGeometryRef(), out, kinds)
            fields = {feature.GetFieldDefnRef(i).GetName(): field_value(feature, i)
                      for i in range(feature.GetFieldCount())}
            print(json.dumps({"parts": out, "kinds": kinds, "fields": fields}))
    print(json.dumps({"complaints": complaints}))
    del complaints[:]


for line in open(sys.argv[1], encoding="utf-8"):
    path, source, driver = line.rstrip("\n").split("\t")
    print(json.dumps({"file": path}))
    try:
        view(path, source or None, driver)
    except Exception:
        print(json.dumps({"file": path, "failed": True}))
