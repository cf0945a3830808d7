"""P0300-P0599: ignition and misfire, auxiliary emission controls, speed and idle, inputs."""
from common import CIRCUIT, CIRCUIT_ERRATIC, CONTROL, LETTERS, family, put, run

put(300, "Random/Multiple Cylinder Misfire Detected")
run(301, [f"Cylinder {n} Misfire Detected" for n in range(1, 13)])
run(313, ["Misfire Detected with Low Fuel", "Single Cylinder Misfire (Cylinder not Specified)",
          "Crankshaft Position System Variation Not Learned",
          "Engine Misfire Detected on Startup (First 1000 Revolutions)", "Rough Road Hardware Not Present",
          'Rough Road Sensor "A" Signal Circuit', 'Rough Road Sensor "B"'])
family(320, "Ignition/Distributor Engine Speed Input", ["Circuit", "Circuit Range/Performance",
                                                         "Circuit No Signal", "Circuit Intermittent"])
put(324, "Knock Control System Error")
family(325, "Knock Sensor 1", CIRCUIT, "(Bank 1 or Single Sensor)")
family(330, "Knock Sensor 2", CIRCUIT, "(Bank 2)")
family(335, 'Crankshaft Position Sensor "A"', CIRCUIT)
family(340, 'Camshaft Position Sensor "A"', CIRCUIT, "(Bank 1 or Single Sensor)")
family(345, 'Camshaft Position Sensor "A"', CIRCUIT, "(Bank 2)")
put(350, "Ignition Coil Primary/Secondary Circuit")
run(351, [f'Ignition Coil "{letter}" Primary/Secondary Circuit' for letter in LETTERS])
put(363, "Misfire Detected - Fueling Disabled")
family(365, 'Camshaft Position Sensor "B"', CIRCUIT, "(Bank 1)")
PULSES = ["", "Too Many Pulses", "Too Few Pulses", "Intermittent/Erratic Pulses", "No Pulse"]
family(370, 'Timing Reference High Resolution Signal "A"', PULSES)
family(375, 'Timing Reference High Resolution Signal "B"', PULSES)
run(380, ['Glow Plug/Heater Circuit "A"', "Glow Plug/Heater Indicator Circuit", 'Glow Plug/Heater Circuit "B"',
          "Glow Plug Control Module Control Circuit Low", "Glow Plug Control Module Control Circuit High"])
family(385, 'Crankshaft Position Sensor "B"', CIRCUIT)
family(390, 'Camshaft Position Sensor "B"', CIRCUIT, "(Bank 2)")

run(400, ["Exhaust Gas Recirculation Flow", "Exhaust Gas Recirculation Flow Insufficient Detected",
          "Exhaust Gas Recirculation Flow Excessive Detected", "Exhaust Gas Recirculation Control Circuit",
          "Exhaust Gas Recirculation Control Circuit Range/Performance",
          'Exhaust Gas Recirculation Sensor "A" Circuit Low', 'Exhaust Gas Recirculation Sensor "A" Circuit High',
          'Exhaust Gas Recirculation Sensor "B" Circuit Low', 'Exhaust Gas Recirculation Sensor "B" Circuit High',
          'Exhaust Gas Recirculation Sensor "A" Circuit'])
run(410, ["Secondary Air Injection System", "Secondary Air Injection System Incorrect Flow Detected"])
for start, letter in ((412, "A"), (415, "B")):
    family(start, f'Secondary Air Injection System Switching Valve "{letter}"',
           ["Circuit", "Circuit Open", "Circuit Shorted"])
run(418, ['Secondary Air Injection System Control "A" Circuit', 'Secondary Air Injection System Control "B" Circuit'])
for start, bank in ((420, 1), (430, 2)):
    run(start, [f"Catalyst System Efficiency Below Threshold (Bank {bank})",
                f"Warm Up Catalyst Efficiency Below Threshold (Bank {bank})",
                f"Main Catalyst Efficiency Below Threshold (Bank {bank})",
                f"Heated Catalyst Efficiency Below Threshold (Bank {bank})",
                f"Heated Catalyst Temperature Below Threshold (Bank {bank})"])
    family(start + 5, "Catalyst Temperature Sensor", ["", "Range/Performance", "Circuit Low", "Circuit High"],
           f"(Bank {bank} Sensor 1)")
    put(start + 9, f"Catalyst Heater Control Circuit (Bank {bank})")
EVAP = "Evaporative Emission System"
run(440, [EVAP, f"{EVAP} Incorrect Purge Flow", f"{EVAP} Leak Detected (small leak)"])
family(443, f"{EVAP} Purge Control Valve", ["Circuit", "Circuit Open", "Circuit Shorted"])
family(446, f"{EVAP} Vent Control", ["Circuit", "Circuit Open", "Circuit Shorted"])
put(449, f"{EVAP} Vent Valve/Solenoid Circuit")
family(450, f"{EVAP} Pressure Sensor/Switch", ["", "Range/Performance", "Low", "High", "Intermittent/Erratic"])
run(455, [f"{EVAP} Leak Detected (large leak)", f"{EVAP} Leak Detected (very small leak)",
          f"{EVAP} Leak Detected (fuel cap loose/off)", f"{EVAP} Purge Control Valve Circuit Low",
          f"{EVAP} Purge Control Valve Circuit High"])
family(460, 'Fuel Level Sensor "A"', CIRCUIT_ERRATIC)
family(465, "EVAP Purge Flow Sensor", CIRCUIT)
family(470, 'Exhaust Pressure Sensor "A"', CIRCUIT_ERRATIC)
family(475, 'Exhaust Pressure Control Valve "A"', ["", "Range/Performance", "Low", "High", "Intermittent"])
run(480, ["Fan 1 Control Circuit", "Fan 2 Control Circuit", "Fan 3 Control Circuit", "Fan Rationality Check",
          "Fan Circuit Over Current", "Fan Power/Ground Circuit", 'Exhaust Gas Recirculation Sensor "B" Circuit',
          'Exhaust Gas Recirculation Throttle Control Circuit "A"',
          'Exhaust Gas Recirculation Throttle Control Circuit "A" Range/Performance',
          'Exhaust Gas Recirculation "A" Control Circuit Low', 'Exhaust Gas Recirculation "A" Control Circuit High',
          "Secondary Air Injection System Insufficient Flow (Bank 1)",
          "Secondary Air Injection System Insufficient Flow (Bank 2)", "Fan Overspeed", "Fan Speed Low",
          "Fan Speed High", f"{EVAP} High Purge Flow", f"{EVAP} Low Purge Flow",
          f"{EVAP} Vent Valve Control Circuit Low", f"{EVAP} Vent Valve Control Circuit High"])

run(500, ['Vehicle Speed Sensor "A"', 'Vehicle Speed Sensor "A" Range/Performance',
          'Vehicle Speed Sensor "A" Circuit Low', 'Vehicle Speed Sensor "A" Intermittent/Erratic/High',
          'Brake Switch "A"/"B" Correlation', "Idle Air Control System",
          "Idle Air Control System RPM Lower Than Expected", "Idle Air Control System RPM Higher Than Expected",
          "Idle Air Control System Circuit Low", "Idle Air Control System Circuit High",
          "Closed Throttle Position Switch", "Idle Air Control Circuit", "Starter Request Circuit",
          "Invalid Immobilizer Key", "Battery Temperature Sensor Circuit Range/Performance",
          "Battery Temperature Sensor Circuit", "Battery Temperature Sensor Circuit Low",
          "Battery Temperature Sensor Circuit High", "Idle Air Control Circuit Intermittent",
          "Idle Air Control System Performance"])
family(520, "Engine Oil Pressure Sensor/Switch", CIRCUIT[:4])
run(524, ["Engine Oil Pressure Too Low", "Cruise Control Servo Control Circuit Range/Performance"])
family(526, "Fan Speed Sensor", ["Circuit", "Circuit Range/Performance", "Circuit No Signal", "Circuit Intermittent"])
family(530, 'A/C Refrigerant Pressure Sensor "A"', CIRCUIT[:4])
put(534, "Air Conditioner Refrigerant Charge Loss")
family(535, "A/C Evaporator Temperature Sensor", CIRCUIT)
run(540, ['Intake Air Heater "A" Circuit', 'Intake Air Heater "A" Circuit Low', 'Intake Air Heater "A" Circuit High',
          'Intake Air Heater "A" Circuit Open'])
for start, bank in ((544, 1), (547, 2)):
    family(start, "Exhaust Gas Temperature Sensor", ["Circuit", "Circuit Low", "Circuit High"],
           f"(Bank {bank} Sensor 1)")
family(550, "Power Steering Pressure Sensor/Switch", CIRCUIT)
family(555, "Brake Booster Pressure Sensor", CIRCUIT)
run(560, ["System Voltage", "System Voltage Unstable", "System Voltage Low", "System Voltage High",
          'Cruise Control Multi-Function Input "A" Circuit', "Cruise Control On Signal", "Cruise Control Off Signal",
          "Cruise Control Resume Signal", "Cruise Control Set Signal", "Cruise Control Coast Signal",
          "Cruise Control Accelerate Signal", 'Brake Switch "A" Circuit', 'Brake Switch "A" Circuit Low',
          'Brake Switch "A" Circuit High', "Cruise Control System - Vehicle Speed Too High",
          "Cruise Control Input Circuit", "Cruise Control Input Circuit Low", "Cruise Control Input Circuit High"])
family(578, 'Cruise Control Multi-Function Input "A"',
       ["Circuit Stuck", "Circuit Range/Performance", "Circuit Low", "Circuit High"])
family(582, "Cruise Control Vacuum", CONTROL)
put(585, 'Cruise Control Multi-Function Input "A"/"B" Correlation')
family(586, "Cruise Control Vent", CONTROL)
family(589, 'Cruise Control Multi-Function Input "B"',
       ["Circuit", "Circuit Stuck", "Circuit Range/Performance", "Circuit Low", "Circuit High"])
family(594, "Cruise Control Servo", CONTROL)
family(597, "Thermostat Heater", CONTROL)
