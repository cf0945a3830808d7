"""P3400-P3499: cylinder deactivation, eight codes a cylinder between the two bank codes."""
from common import family, put

put(3400, "Cylinder Deactivation System (Bank 1)")
VALVE = ["Control Circuit/Open", "Control Performance", "Control Circuit Low", "Control Circuit High"]
for n in range(1, 13):
    family(3401 + 8 * (n - 1), f"Cylinder {n} Deactivation/Intake Valve", VALVE)
    family(3405 + 8 * (n - 1), f"Cylinder {n} Exhaust Valve", VALVE)
put(3497, "Cylinder Deactivation System (Bank 2)")
