# Deleting a view through the flat destructor freed memory inside its record.
import gc, os, sys
sys.path[:0] = [os.environ.get('PYCLIPGRADE_HOST', os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', '..', '..', 'build', 'host')), os.path.join(os.path.dirname(os.path.abspath(__file__)), '..')]
import PyClipGrade as P
import _PyClipGrade as M
from hostile import *
f = P.PyClipGrade()
try:
    O = keep(P.FeaturePoints().mouth)
    keep(M.delete_Mouth(O))
    keep(O.interpbottomright)
    pass
except SystemError:
    raise
except Exception:
    pass
try:
    O = keep(P.MeshDataInfo().meshData)
    keep(M.delete_MeshData(O))
    keep(O.nColumns)
    pass
except SystemError:
    raise
except Exception:
    pass
