# A record deleted through the flat destructor was still read and deleted again through its wrapper.
import gc, os, sys
sys.path[:0] = [os.environ.get('PYCLIPGRADE_HOST', os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', '..', '..', 'build', 'host')), os.path.join(os.path.dirname(os.path.abspath(__file__)), '..')]
import PyClipGrade as P
import _PyClipGrade as M
from hostile import *
f = P.PyClipGrade()
try:
    O = P.PointD()
    M.delete_PointD(O)
    O.x
    pass
except SystemError:
    raise
except Exception:
    pass
try:
    O = P.PointD()
    M.delete_PointD(O)
    M.delete_PointD(O)
    pass
except SystemError:
    raise
except Exception:
    pass
try:
    O = P.PointD()
    M.delete_PointD(O)
    O.x = 1
    pass
except SystemError:
    raise
except Exception:
    pass
